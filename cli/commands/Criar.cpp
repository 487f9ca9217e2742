#include <CLI/CLI.hpp>
#include <iostream>

#include "Asking.h"
#include "Commands.h"
#include "Interruption.h"
#include "NewLedger.h"
#include "Password.h"
#include "Registration.h"
#include "Secrets.h"
#include "common/Session.h"

namespace tsv::cli {
namespace {

void CreateWithUser(const std::string& path, const std::string& login, const std::string& name,
                    const std::string& password) {
  const Interruption interruption;
  NewLedger ledger(path);
  CurrentSession().BancoDeDados = ledger.Database();
  InsertUser(1, login, name, password);
  interruption.Check();
  ledger.Keep();
}

}  // namespace

void AddCriar(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("criar", "Cria um livro novo com seu primeiro usuário");
  auto name = std::make_shared<std::string>();
  command->add_option("--nome", *name, "Nome do primeiro usuário")->type_name("NOME");
  command->callback([&context, name] {
    context.action = [&context, name] {
      const std::string& path = context.Path();
      ExpectNoFile(path);
      const std::string login = CheckedLogin(GivenOrAsked(context.usuario, "Login do primeiro usuário", "-u LOGIN"));
      const std::string fullName = CheckedName(GivenOrAsked(*name, "Nome", "--nome NOME"), "Nome", 50);
      const std::string password = CheckedPassword(NewPassword("TESOVIA_SENHA", "Senha de " + login));
      context.Hide(password);
      CreateWithUser(path, login, fullName, password);
      std::cout << "Livro criado em " << Told(path) << ", com o usuário " << login << ".\n";
      return kDone;
    };
  });
}

}  // namespace tsv::cli
