#include <CLI/CLI.hpp>
#include <iostream>

#include "Arguments.h"
#include "Commands.h"
#include "Entries.h"
#include "Refusals.h"
#include "Texts.h"
#include "types/Conversions.h"

namespace tsv::cli {
namespace {

void Show(const CLancamento& entry) {
  std::cout << "Lançamento " << entry.Id() << " de " << Day(ToDate(entry.Data()))
            << " gravado. Depois dele, saldo da conta " << entry.CodConta() << ": " << Amount(entry.SaldoConta())
            << "; saldo global: " << Amount(entry.SaldoGlobal()) << ".\n";
}

}  // namespace

void AddLancar(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("lancar", "Lança uma previsão: valor positivo entra, negativo sai");
  auto entry = std::make_shared<TypedEntry>();
  command->add_option("--data", entry->data, "Data da previsão (sem a opção, hoje)")
      ->type_name("DATA")
      ->check(NotBlank);
  command->add_option("--referencia", entry->referencia, "Data de referência (sem a opção, a da previsão)")
      ->type_name("DATA")
      ->check(NotBlank);
  command->add_option("--valor", entry->valor, "Por exemplo 150,00 ou -1.234,56")->type_name("VALOR")->required();
  command->add_option("--historico", entry->historico, "Até 50 caracteres")->type_name("TEXTO")->required();
  command->add_option("--conta", entry->conta, "Código da conta")->type_name("CODIGO")->required();
  command->add_option("--receita-despesa", entry->recDesp, "Código da receita/despesa")
      ->type_name("CODIGO")
      ->required();
  command->add_option("--centro", entry->centro, "Código do centro de custo")->type_name("CODIGO")->check(NotBlank);
  command->add_option("--parceiro", entry->parceiro, "Número do cliente ou fornecedor")
      ->type_name("NUMERO")
      ->check(NotBlank);
  command->add_option("--documento", entry->documento, "Até 15 caracteres")->type_name("TEXTO");
  command->callback([&context, entry] {
    context.action = [&context, entry] {
      if (entry->data.empty()) entry->data = Day(Today());
      Tesovia& tesovia = context.Login();
      Show(*Patiently(context, [&] { return Post(tesovia, context.Host(), *entry); }));
      return kDone;
    };
  });
}

}  // namespace tsv::cli
