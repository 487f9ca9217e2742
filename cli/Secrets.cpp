#include "Secrets.h"

#include <utility>
#include <vector>

#include "db/Address.h"

namespace tsv::cli {
namespace {

// Whole words with what is told of them.
std::vector<std::pair<std::string, std::string>>& Words() {
  static std::vector<std::pair<std::string, std::string>> words;
  return words;
}

}  // namespace

void RememberWord(const std::string& word) {
  std::string shown = db::WithoutPassword(word);
  if (shown != word) Words().emplace_back(word, std::move(shown));
}

std::string Told(std::string text) {
  for (const auto& [word, shown] : Words()) {
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + shown.size()))
      text.replace(at, word.size(), shown);
  }
  return text;
}

}  // namespace tsv::cli
