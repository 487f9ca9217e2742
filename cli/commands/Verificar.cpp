#include <CLI/CLI.hpp>
#include <iostream>

#include "BalanceCheck.h"
#include "Commands.h"
#include "ProgressBar.h"
#include "Texts.h"
#include "common/Recordsets.h"
#include "types/Conversions.h"

namespace tsv::cli {
namespace {

constexpr const char* kNotChecked =
    "Não se confere: se valores, datas e códigos são os que foram lançados; a chave DataId de cada lançamento; o "
    "diário; os cadastros; o contador de lançamentos; as transferências.\n";

std::int64_t EntriesOf(Tesovia& tesovia) {
  const Module1::ScopedRecordset rows(
      tesovia.AbrirRecordsetTS("SELECT Count(*) As Total FROM Lancamentos", db::dbOpenSnapshot));
  return ToLong(rows->Fields("Total").Value());
}

ExitCode Check(Tesovia& tesovia) {
  ProgressBar bar("Conferindo", EntriesOf(tesovia));
  BalanceCheck check;
  const Module1::ScopedRecordset rows(tesovia.AbrirRecordsetTS(BalanceCheck::kQuery, db::dbOpenForwardOnly));
  const auto wrong = check.Run(*rows, [&bar](std::int64_t done) {
    if (done % 1000 == 0) bar.At(done);
  });
  bar.Wipe();
  if (wrong) {
    std::cout << TextOf(*wrong) << "\nLançamentos conferidos antes dele, sem diferença: " << Count(check.Entries())
              << ". Os posteriores não foram conferidos.\n";
    return kRefused;
  }
  std::cout << "Conferidos os cinco saldos de " << Count(check.Entries(), "lançamento", "lançamentos")
            << ": nenhuma diferença.\n"
            << kNotChecked;
  return kDone;
}

}  // namespace

void AddVerificar(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("verificar", "Recalcula os cinco saldos de todos os lançamentos e compara");
  command->callback([&context] { context.action = [&context] { return Check(context.Login()); }; });
}

}  // namespace tsv::cli
