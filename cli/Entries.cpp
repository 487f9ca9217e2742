#include "Entries.h"

#include <chrono>
#include <random>
#include <thread>
#include <utility>

#include "Arguments.h"
#include "Registration.h"
#include "common/Errors.h"
#include "types/Text.h"

namespace tsv::cli {

namespace {

// How the ledger begins to say that another user took the serial since it was read: nothing was written.
constexpr std::string_view kSerialTaken = "Erro de bloqueio.";

// What of the entry's accounts, types, centres and partners takes no postings.
void ExplainBox(ConsoleHost& host, const TypedEntry& entry) {
  const std::pair<const MasterTable*, const std::string*> named[] = {
      {&kContas, &entry.conta}, {&kTipos, &entry.recDesp}, {&kCentros, &entry.centro}, {&kParceiros, &entry.parceiro}};
  for (const auto& [table, key] : named) {
    const std::string_view trimmed = text::Trim(*key);
    if (trimmed.empty()) continue;
    if (const std::string why = WhyUnusable(*table, std::string(trimmed)); !why.empty()) host.Explain(why);
  }
}

}  // namespace

std::shared_ptr<CLancamento> Post(Tesovia& tesovia, ConsoleHost& host, const TypedEntry& entry) {
  for (const std::string* text : {&entry.historico, &entry.conta, &entry.recDesp, &entry.centro, &entry.documento}) {
    if (!text::IsValidUtf8(*text)) throw Failure(kUsage, "O texto não está em UTF-8.");
    if (text->find('\'') != std::string::npos) {
      throw Failure(kRefused, "Apóstrofos não são permitidos: '" + *text + "'.");
    }
    if (text->find_first_of("\r\n") != std::string::npos) throw Failure(kRefused, "Um texto é de uma só linha.");
  }
  const Date date = DateFrom(entry.data);
  const Date reference = entry.referencia.empty() ? date : DateFrom(entry.referencia);
  const Currency amount = AmountFrom(entry.valor);
  const std::int32_t partner = entry.parceiro.empty() ? 0 : NumberFrom(entry.parceiro);
  host.ForgetBox();
  try {
    return tesovia.FazerLancamentoTS(date, reference, amount, entry.historico, entry.conta, entry.recDesp, entry.centro,
                                     partner, entry.documento);
  } catch (const Erro&) {
    if (!host.LastBox().empty()) ExplainBox(host, entry);
    throw;
  }
}

std::shared_ptr<CLancamento> PostPatiently(Tesovia& tesovia, ConsoleHost& host, const TypedEntry& entry) {
  constexpr auto kPatience = std::chrono::seconds(10);
  std::minstd_rand random(std::random_device{}());
  const auto end = std::chrono::steady_clock::now() + kPatience;
  for (;;) {
    try {
      return Post(tesovia, host, entry);
    } catch (const Erro& erro) {
      if (!erro.Descricao().starts_with(kSerialTaken) || std::chrono::steady_clock::now() > end) throw;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5 + random() % 50));
  }
}

std::string ReasonOf(const Erro& erro, const ConsoleHost& host) {
  if (!erro.Descricao().empty()) return erro.Descricao();
  if (!host.LastBox().empty()) return host.LastBox();
  return "Os saldos gravados não conferem com o lançamento, que foi desfeito. Se outro usuário estava lançando, "
         "tente novamente; senão, confira o livro com 'tesovia verificar'.";
}

bool IsRefusal(const Erro& erro) { return erro.Numero() >= TS_ERRO_LOGIN && erro.Numero() <= TS_ERRO_ESTORNO; }

}  // namespace tsv::cli
