#include "Trace.h"

#include <filesystem>

#include "Failure.h"

namespace tsv::cli {

Trace::Trace(const std::string& path) {
  // A slip of the hand must not cost a ledger or a file of entries.
  if (std::filesystem::exists(path))
    throw Failure(kUsage, "'" + path + "' já existe; escolha outro arquivo para --rastrear.");
  file_.open(path);
  if (!file_) throw Failure(kFailed, "Não foi possível escrever em '" + path + "'.");
}

void Trace::Hide(std::string_view secret) {
  if (secret.empty()) return;
  std::string paired;
  for (const char c : secret) paired.append(c == '\'' ? 2 : 1, c);
  hidden_.push_back("'" + paired + "'");
  hidden_.push_back('"' + std::string(secret) + '"');
}

void Trace::AboutToRun(std::string_view text) {
  std::string shown(text);
  for (const std::string& secret : hidden_) {
    for (std::size_t at = shown.find(secret); at != std::string::npos; at = shown.find(secret, at)) {
      shown.replace(at, secret.size(), "'***'");
      at += 5;
    }
  }
  file_ << shown << '\n';
}

void Trace::HasRun(std::string_view /*text*/, std::int32_t affected) { file_ << "  -> " << affected << '\n'; }

}  // namespace tsv::cli
