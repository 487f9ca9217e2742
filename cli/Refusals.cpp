#include "Refusals.h"

#include <random>
#include <string_view>
#include <thread>

#include "common/Errors.h"
#include "db/EngineError.h"

namespace tsv::cli {
namespace {

// How the ledger begins to say that another user took the serial since it was read: nothing was written.
constexpr std::string_view kSerialTaken = "Erro de bloqueio.";

constexpr auto kPatience = std::chrono::seconds(10);

// Balances that do not verify again and again are no other user's doing.
constexpr int kSilentTries = 20;

bool IsSilent(const Erro& erro, const ConsoleHost& host) {
  return erro.Numero() == TS_ERRO_LOGIN && erro.Descricao().empty() && host.LastBox().empty();
}

}  // namespace

bool IsRefusal(const Erro& erro) { return erro.Numero() >= TS_ERRO_LOGIN && erro.Numero() <= TS_ERRO_ESTORNO; }

std::string ReasonOf(const Erro& erro, const ConsoleHost& host) {
  if (!erro.Descricao().empty()) return erro.Descricao();
  if (!host.LastBox().empty()) return host.LastBox();
  return "Os saldos gravados não conferem com a operação, que foi desfeita. Se outro usuário estava usando o livro, "
         "tente novamente; senão, confira o livro com 'tesovia verificar'.";
}

void RaiseWithCause(const Erro& erro, const std::vector<Classification>& involved) {
  std::string text = erro.Descricao();
  if (text.find("desativad") != std::string::npos) {
    for (const Classification& classification : involved) {
      for (const std::string& why : WhyUnusable(classification)) text += '\n' + why;
    }
  }
  throw Erro(erro.Numero(), text, erro.Origem());
}

Patience::Patience(const ConsoleHost& host) : host_(host), end_(std::chrono::steady_clock::now() + kPatience) {}

bool Patience::OnlyCameSecond(const Erro& erro) {
  if (IsSilent(erro, host_)) return ++silent_ < kSilentTries;
  return erro.Descricao().starts_with(kSerialTaken) ||
         erro.Numero() == static_cast<std::int32_t>(db::EngineError::Locked);
}

bool Patience::AllowsAnotherTry(const Erro& erro) {
  thread_local std::minstd_rand random(std::random_device{}());
  if (!OnlyCameSecond(erro) || std::chrono::steady_clock::now() > end_) return false;
  std::this_thread::sleep_for(std::chrono::milliseconds(5 + random() % 50));
  return true;
}

}  // namespace tsv::cli
