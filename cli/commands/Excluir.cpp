#include <CLI/CLI.hpp>
#include <iostream>

#include "Commands.h"
#include "EntryChange.h"
#include "Texts.h"
#include "common/Recordsets.h"
#include "common/Statement.h"
#include "types/Conversions.h"

namespace tsv::cli {
namespace {

using Module1::NumberLiteral;
using Module1::Statement;

// The journal keeps a deleted entry with the balances that are left without it.
void Tell(Tesovia& tesovia, const CLancamento& entry) {
  Statement query;
  query << "SELECT SaldoConta, SaldoGlobal FROM HistoricosDeLancamentos WHERE IdAcao = 3 AND Id = "
        << NumberLiteral(entry.Id());
  const Module1::ScopedRecordset left(tesovia.AbrirRecordsetTS(query.Text(), db::dbOpenSnapshot));
  const auto balance = [&left](const char* name) { return Amount(ToCurrency(left->Fields(name).Value())); };
  std::cout << "Lançamento " << entry.Id() << " de " << Day(ToDate(entry.Data()))
            << " excluído. Sem ele, saldo da conta " << entry.CodConta() << " naquele ponto: " << balance("SaldoConta")
            << "; saldo global: " << balance("SaldoGlobal") << ".\n";
}

ExitCode Delete(Context& context, EntryChoice choice) {
  choice.Complete();
  EntryChange change(context, choice);
  const bool isTransfer = change.Legs().size() > 1;
  change.Confirm(isTransfer ? "Excluir os dois lançamentos da transferência?" : "Excluir este lançamento?",
                 "Nada foi excluído.");
  change.Run([&] { change.Ledger().ExcluirLancamentoTS(change.Entry().Id(), change.Version()); });
  std::cout << '\n';
  for (const auto& entry : change.Legs()) Tell(change.Ledger(), *entry);
  return kDone;
}

}  // namespace

void AddExcluir(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("excluir", "Exclui um lançamento, ou os dois de uma transferência");
  auto choice = std::make_shared<EntryChoice>();
  choice->AddOptions(*command);
  choice->AddConfirmation(*command);
  command->callback([&context, choice] { context.action = [&context, choice] { return Delete(context, *choice); }; });
}

}  // namespace tsv::cli
