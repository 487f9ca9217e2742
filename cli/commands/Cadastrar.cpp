#include <CLI/CLI.hpp>
#include <iostream>
#include <tuple>
#include <vector>

#include "Arguments.h"
#include "Commands.h"
#include "Password.h"
#include "Registration.h"
#include "common/CDaoTrans.h"
#include "common/Recordsets.h"
#include "common/Session.h"
#include "types/Text.h"

namespace tsv::cli {
namespace {

using Module1::Literal;
using Module1::NumberLiteral;
using Module1::Statement;
using Module1::TextLiteral;
using Module1::TextOrNull;

constexpr std::size_t kDescriptionLimit = 50;
constexpr std::size_t kPartnerNameLimit = 60;
constexpr std::size_t kBranchLimit = 30;

struct Given {
  std::string key;
  std::string description;
  std::string kind;
  std::string branch;
};

void Say(const MasterTable& table, const std::string& what, const char* verb) {
  std::cout << table.title << ' ' << what << ' ' << verb << table.gender << ".\n";
}

void RegisterCoded(const MasterTable& table, const Given& given) {
  const std::string code = CheckedCode(given.key);
  const std::string description = CheckedName(given.description, "Descrição", kDescriptionLimit);
  CDaoTrans transaction;
  transaction.BegTrans();
  ExpectUnused(table, code);
  Statement insert;
  insert << "INSERT INTO " << table.table << " (Id, Codigo, " << table.description << ") VALUES ("
         << NumberLiteral(NextId(table)) << ", " << TextLiteral(code) << ", " << TextLiteral(description) << ")";
  insert.Execute();
  if (!given.kind.empty()) {
    Statement update;
    update << "UPDATE TiposMovimentacoes SET Tipo = " << NumberLiteral(given.kind == "entrada" ? 1 : 2)
           << " WHERE Codigo = " << TextLiteral(code);
    update.Execute();
  }
  const std::vector<std::string> mixed = CodesThatLookApart(table, code);
  transaction.ComTrans();
  Say(table, code + " " + description, "cadastrad");
  for (const std::string& other : mixed) {
    const auto& [inner, outer] = code.size() > other.size() ? std::tie(code, other) : std::tie(other, code);
    std::cerr << "Atenção: " << inner << " fica dentro de " << outer << ", porque começa igual: os saldos de " << outer
              << " contam também os lançamentos de " << inner << ".\n";
  }
}

void RegisterPartner(const Given& given) {
  const std::string name = CheckedName(given.key, "Nome", kPartnerNameLimit);
  const std::string branch = given.branch.empty() ? "" : CheckedName(given.branch, "Filial", kBranchLimit);
  CDaoTrans transaction;
  transaction.BegTrans();
  Statement query;
  query << "SELECT Id FROM ParceirosComerciais WHERE Nome = " << TextLiteral(name)
        << " AND Filial & '' = " << TextLiteral(branch);
  const Module1::ScopedRecordset rows(CurrentSession().BancoDeDados->OpenRecordset(query.Text(), db::dbOpenSnapshot));
  if (!rows->EndOfFile()) throw Failure(kRefused, "Parceiro '" + name + "' já está cadastrado com essa filial.");
  const std::int32_t id = NextId(kParceiros);
  Statement insert;
  insert << "INSERT INTO ParceirosComerciais (Id, Nome, Filial) VALUES (" << NumberLiteral(id) << ", "
         << TextLiteral(name) << ", " << TextOrNull(branch) << ")";
  insert.Execute();
  transaction.ComTrans();
  Say(kParceiros, std::to_string(id) + " " + name, "cadastrad");
}

void RegisterUser(Context& context, const Given& given) {
  const std::string login = CheckedLogin(given.key);
  const std::string name = CheckedName(given.description, "Nome", kDescriptionLimit);
  const std::string password = CheckedPassword(NewPassword("TESOVIA_SENHA_NOVA", "Senha de " + login));
  context.Hide(password);
  CDaoTrans transaction;
  transaction.BegTrans();
  ExpectUnused(kUsuarios, login);
  InsertUser(NextId(kUsuarios), login, name, password);
  transaction.ComTrans();
  Say(kUsuarios, login, "cadastrad");
}

void AddMaster(CLI::App& cadastrar, Context& context, const char* command, const char* help,
               const std::function<void(CLI::App&, Given&)>& addOptions, const std::function<void(const Given&)>& run) {
  auto given = std::make_shared<Given>();
  auto* sub = cadastrar.add_subcommand(command, help);
  addOptions(*sub, *given);
  sub->callback([&context, given, run] {
    context.action = [&context, given, run] {
      context.Login();
      run(*given);
      return kDone;
    };
  });
}

void AddKeyAndDescription(CLI::App& command, Given& given) {
  command.add_option("CODIGO", given.key, "Código, até 31 caracteres; 1.1 fica dentro de 1")->type_name("")->required();
  command.add_option("DESCRICAO", given.description, "Descrição, até 50 caracteres")->type_name("")->required();
}

void SetActive(const MasterTable& table, const std::string& key, bool active) {
  if (&table == &kTipos && key == "001") {
    throw Failure(kRefused, "Receita/despesa '001': é reservada às transferências entre contas.");
  }
  const Literal literal = table.keyIsNumber ? NumberLiteral(NumberFrom(key)) : TextLiteral(key);
  Statement update;
  update << "UPDATE " << table.table << " SET " << table.inactive << " = ";
  if (active) {
    update << "False";
  } else {
    update << "True";
  }
  update << " WHERE " << table.key << " = " << literal;
  if (update.Execute() == 0) {
    throw Failure(kRefused, std::string(table.title) + " '" + key + "' não está cadastrad" + table.gender + ".");
  }
  Say(table, key, active ? "ativad" : "desativad");
}

void AddSwitch(CLI::App& app, Context& context, const char* name, const char* help, bool active) {
  auto* command = app.add_subcommand(name, help);
  command->require_subcommand(1);
  for (const MasterTable* table : {&kContas, &kTipos, &kCentros, &kParceiros, &kUsuarios}) {
    auto key = std::make_shared<std::string>();
    auto* sub = command->add_subcommand(table->command, table->title);
    const char* label = table == &kParceiros ? "NUMERO" : table == &kUsuarios ? "LOGIN" : "CODIGO";
    sub->add_option(label, *key, "Qual")->type_name("")->required();
    sub->callback([&context, table, key, active] {
      context.action = [&context, table, key, active] {
        context.Login();
        if (table == &kUsuarios && !active && text::CompareFolded(*key, context.usuario) == 0) {
          throw Failure(kRefused, "Quem está usando o livro não pode desativar a si mesmo.");
        }
        SetActive(*table, *key, active);
        return kDone;
      };
    });
  }
}

}  // namespace

void AddCadastrar(CLI::App& app, Context& context) {
  auto* cadastrar = app.add_subcommand("cadastrar", "Cadastra contas, receitas/despesas, centros, parceiros, usuários");
  cadastrar->require_subcommand(1);
  AddMaster(*cadastrar, context, kContas.command, "Conta de capital: caixa, banco", AddKeyAndDescription,
            [](const Given& given) { RegisterCoded(kContas, given); });
  AddMaster(
      *cadastrar, context, kTipos.command, "Tipo de receita ou despesa",
      [](CLI::App& command, Given& given) {
        AddKeyAndDescription(command, given);
        command.add_option("--tipo", given.kind, "Só aceita lançamentos desse sinal (sem a opção, aceita os dois)")
            ->type_name("entrada|saida")
            ->check(CLI::IsMember({"entrada", "saida"}).description(""));
      },
      [](const Given& given) { RegisterCoded(kTipos, given); });
  AddMaster(*cadastrar, context, kCentros.command, "Centro de custo/lucro", AddKeyAndDescription,
            [](const Given& given) { RegisterCoded(kCentros, given); });
  AddMaster(
      *cadastrar, context, kParceiros.command, "Cliente ou fornecedor; recebe um número",
      [](CLI::App& command, Given& given) {
        command.add_option("NOME", given.key, "Nome, até 60 caracteres")->type_name("")->required();
        command.add_option("--filial", given.branch, "Filial, até 30 caracteres")->type_name("FILIAL");
      },
      RegisterPartner);
  AddMaster(
      *cadastrar, context, kUsuarios.command, "Usuário; a senha é perguntada ou vem de TESOVIA_SENHA_NOVA",
      [](CLI::App& command, Given& given) {
        command.add_option("LOGIN", given.key, "Login, até 30 caracteres")->type_name("")->required();
        command.add_option("NOME", given.description, "Nome, até 50 caracteres")->type_name("")->required();
      },
      [&context](const Given& given) { RegisterUser(context, given); });
}

void AddAtivarDesativar(CLI::App& app, Context& context) {
  AddSwitch(app, context, "ativar", "Volta a aceitar lançamentos de um cadastro desativado", true);
  AddSwitch(app, context, "desativar", "Deixa de aceitar lançamentos de um cadastro", false);
}

}  // namespace tsv::cli
