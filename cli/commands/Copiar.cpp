#include <CLI/CLI.hpp>
#include <iostream>

#include "Arguments.h"
#include "Commands.h"
#include "NewLedger.h"
#include "Rows.h"
#include "Secrets.h"
#include "Texts.h"
#include "common/CDaoTrans.h"
#include "common/Session.h"
#include "copying/LedgerCopy.h"

namespace tsv::cli {
namespace {

std::vector<std::pair<std::string, std::int64_t>> CopyTo(Context& context, const std::string& path) {
  context.Login();
  const Interruption interruption;
  NewLedger target(path);
  CDaoTrans transaction;  // on both ledgers
  transaction.BegTrans();
  LedgerCopy copy(context, interruption, *CurrentSession().BancoDeDados, *target.Database());
  copy.Run();
  interruption.Check();
  transaction.ComTrans();
  target.Keep();
  return copy.Rows();
}

ExitCode Copy(Context& context, const std::string& from, const std::string& to) {
  context.arquivo = from;
  ExpectNoFile(to);
  const auto rows = CopyTo(context, to);
  std::cout << "Livro copiado para " << Told(to) << ", com todos os valores iguais e os saldos conferidos:\n";
  const auto writer = MakeRowWriter({}, {{"Tabela", "Tabela"}, {"Linhas", "Linhas", true}}, std::cout);
  for (const auto& [table, count] : rows) writer->Write({table, Count(count)});
  writer->Finish();
  return kDone;
}

}  // namespace

void AddCopiar(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("copiar", "Copia um livro inteiro, entre arquivos e servidores");
  auto from = std::make_shared<std::string>();
  auto to = std::make_shared<std::string>();
  command->add_option("ORIGEM", *from, "O livro, em que você entra como nos outros comandos")
      ->type_name("")
      ->required();
  command->add_option("DESTINO", *to, "O livro novo: um arquivo ou um endereço postgresql://")
      ->type_name("")
      ->required()
      ->check(NotBlank);
  command->callback(
      [&context, from, to] { context.action = [&context, from, to] { return Copy(context, *from, *to); }; });
}

}  // namespace tsv::cli
