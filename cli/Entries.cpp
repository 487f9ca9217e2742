#include "Entries.h"

#include "Arguments.h"
#include "Registration.h"

namespace tsv::cli {

std::shared_ptr<CLancamento> Post(Tesovia& tesovia, ConsoleHost& host, const TypedEntry& entry) {
  for (const std::string* text : {&entry.historico, &entry.conta, &entry.recDesp, &entry.centro, &entry.documento}) {
    CheckText(*text);
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
    if (!host.LastBox().empty()) {
      const Classification classification{entry.conta, entry.recDesp, entry.centro, entry.parceiro};
      for (const std::string& why : WhyUnusable(classification)) host.Explain(why);
    }
    throw;
  }
}

}  // namespace tsv::cli
