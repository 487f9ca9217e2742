#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>

#include "Asking.h"
#include "Commands.h"
#include "Password.h"
#include "Registration.h"
#include "common/CDaoTrans.h"
#include "common/Engines.h"
#include "common/Recordsets.h"
#include "common/Session.h"

namespace tsv::cli {
namespace {

// A ledger without a user could never be opened, so a failure leaves none behind.
void CreateWithUser(const std::string& path, const std::string& login, const std::string& name,
                    const std::string& password) {
  CriarBancoDeDados(path);
  Session& session = CurrentSession();
  try {
    session.BancoDeDados = session.Engine.OpenDatabase(path, false, false, kConnect);
    InsertUser(1, login, name, password);
    session.BancoDeDados->Close();
  } catch (...) {
    Module1::FecharBanco(session.BancoDeDados);
    for (const char* suffix : {"", "-wal", "-shm"}) {
      std::error_code ignored;
      std::filesystem::remove(path + suffix, ignored);
    }
    throw;
  }
  session.BancoDeDados.reset();
}

}  // namespace

void AddCriar(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("criar", "Cria um livro novo com seu primeiro usuário");
  auto name = std::make_shared<std::string>();
  command->add_option("--nome", *name, "Nome do primeiro usuário")->type_name("NOME");
  command->callback([&context, name] {
    context.action = [&context, name] {
      const std::string& path = context.Path();
      if (std::filesystem::exists(path)) throw Failure(kFailed, "'" + path + "' já existe.");
      const std::string login = CheckedLogin(GivenOrAsked(context.usuario, "Login do primeiro usuário", "-u LOGIN"));
      const std::string fullName = CheckedName(GivenOrAsked(*name, "Nome", "--nome NOME"), "Nome", 50);
      const std::string password = CheckedPassword(NewPassword("TESOVIA_SENHA", "Senha de " + login));
      context.Hide(password);
      CreateWithUser(path, login, fullName, password);
      std::cout << "Livro criado em " << path << ", com o usuário " << login << ".\n";
      return kDone;
    };
  });
}

}  // namespace tsv::cli
