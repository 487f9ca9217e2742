#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>

#include "Arguments.h"
#include "Commands.h"
#include "Texts.h"
#include "importing/Importer.h"
#include "types/Erro.h"

namespace tsv::cli {
namespace {

void Say(const std::string& identity, const Importer::Result& done) {
  std::cout << identity << ": " << Count(done.posted, "linha lançada", "linhas lançadas") << ", "
            << Count(done.before, "já lançada antes", "já lançadas antes") << ", "
            << Count(done.refused, "recusada", "recusadas") << ".\n";
}

ExitCode Import(Context& context, const std::string& path, const std::string& identity) {
  Importer importer(context, context.Login(), path, identity);
  try {
    importer.Run();
  } catch (const Erro&) {
    Say(identity, importer.Done());
    std::cerr << "A importação foi interrompida; o que foi lançado fica. Repita o comando para continuar.\n";
    throw;
  }
  Say(identity, importer.Done());
  if (importer.Done().refused == 0) return kDone;
  std::cerr << "Corrija as linhas recusadas no mesmo arquivo e repita o comando: só elas serão lançadas.\n";
  return kRefused;
}

}  // namespace

void AddImportar(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("importar", "Lança as linhas de um arquivo CSV; pode ser repetido sem duplicar");
  auto path = std::make_shared<std::string>();
  auto identity = std::make_shared<std::string>();
  command->add_option("CSV", *path, "O arquivo: colunas data, valor, historico, conta, receita-despesa...")
      ->type_name("")
      ->required();
  command->add_option("--identidade", *identity, "Por que nome lembrar suas linhas (sem a opção, o do arquivo)")
      ->type_name("NOME")
      ->check(NotBlank);
  command->callback([&context, path, identity] {
    context.action = [&context, path, identity] {
      return Import(context, *path, identity->empty() ? std::filesystem::path(*path).filename().string() : *identity);
    };
  });
}

}  // namespace tsv::cli
