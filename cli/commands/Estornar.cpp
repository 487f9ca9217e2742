#include <CLI/CLI.hpp>

#include "Arguments.h"
#include "Asking.h"
#include "Commands.h"
#include "EntryChange.h"
#include "common/Recordsets.h"
#include "common/Session.h"
#include "common/Statement.h"
#include "types/Conversions.h"
#include "types/Text.h"

namespace tsv::cli {
namespace {

constexpr std::size_t kHistoryLimit = 50;

using Module1::AmountLiteral;
using Module1::NumberLiteral;
using Module1::Statement;
using Module1::TextLiteral;

// The newest reversal of this amount by this user, on the leg's account and day. The ledger does not tell which entry
// reverses which leg of a transfer.
std::vector<std::int32_t> ReversalsOf(Tesovia& tesovia, const std::vector<std::shared_ptr<CLancamento>>& legs) {
  std::vector<std::int32_t> ids;
  for (const auto& leg : legs) {
    Statement query;
    query << "SELECT Max(Id) As Ultimo FROM Lancamentos WHERE Estorno = True AND CodRecDesp = "
          << TextLiteral(leg->CodRecDesp()) << " AND CodConta = " << TextLiteral(leg->CodConta())
          << " AND Valor = " << AmountLiteral(-leg->Valor())
          << " AND IdUsuario = " << NumberLiteral(CurrentSession().IdUsuario) << " AND DataId > "
          << TextLiteral(leg->DataId()) << " AND DataId <= " << TextLiteral(leg->DataId().substr(0, 8) + "999999999");
    const Module1::ScopedRecordset rows(tesovia.AbrirRecordsetTS(query.Text(), db::dbOpenSnapshot));
    if (const Variant id = rows->Fields("Ultimo").Value(); !IsNull(id)) ids.push_back(ToLong(id));
  }
  return ids;
}

ExitCode Reverse(Context& context, EntryChoice choice, std::string history) {
  choice.Complete();
  history = GivenOrAsked(history, "Histórico do estorno", "--historico TEXTO");
  CheckText(history);
  EntryChange change(context, choice);
  const bool isTransfer = change.Legs().size() > 1;
  // For a transfer the ledger would only name the column that is too short.
  if (isTransfer && text::Length(text::Trim(history)) > kHistoryLimit) {
    throw Failure(kRefused, "Erro: histórico com mais de 50 caracteres.");
  }
  change.Confirm(isTransfer ? "Estornar os dois lançamentos da transferência?" : "Estornar este lançamento?",
                 "Nada foi estornado.");
  const auto reversal =
      change.Run([&] { return change.Ledger().EstornarLancamentoTS(history, change.Entry().Id(), change.Version()); });
  change.ShowAfter("Depois do estorno:",
                   reversal ? std::vector<std::int32_t>{reversal->Id()} : ReversalsOf(change.Ledger(), change.Legs()));
  return kDone;
}

}  // namespace

void AddEstornar(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("estornar", "Estorna um lançamento, ou os dois de uma transferência");
  auto choice = std::make_shared<EntryChoice>();
  auto history = std::make_shared<std::string>();
  choice->AddOptions(*command);
  command->add_option("--historico", *history, "Histórico do lançamento de estorno, até 50 caracteres")
      ->type_name("TEXTO");
  choice->AddConfirmation(*command);
  command->callback([&context, choice, history] {
    context.action = [&context, choice, history] { return Reverse(context, *choice, *history); };
  });
}

}  // namespace tsv::cli
