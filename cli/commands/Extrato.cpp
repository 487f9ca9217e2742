#include <CLI/CLI.hpp>
#include <array>
#include <iostream>
#include <utility>

#include "Arguments.h"
#include "Commands.h"
#include "Registration.h"
#include "Rows.h"
#include "Texts.h"
#include "common/Recordsets.h"

namespace tsv::cli {
namespace {

using Module1::Statement;
using Module1::TextLiteral;

constexpr std::array<std::pair<const char*, const char*>, 4> kStates = {
    {{"aberto", "?"}, {"realizado", "S"}, {"nao-realizado", "N"}, {"estornado", "E"}}};

struct Options {
  std::string from;
  std::string to;
  std::string account;
  std::string state;
  OutputForm form;
};

// The first eight characters of an entry's key are its day, and the key is the ledger's order.
std::string KeyOf(Date day) {
  std::string iso = day.ToIso().substr(0, 10);
  std::erase(iso, '-');
  return iso;
}

std::string QueryFor(const Options& options) {
  CheckPeriod(options.from, options.to);
  Statement query;
  query << "SELECT Id, Data, CodConta, CodRecDesp, CodCentroCusto, IdParceiroComl, Documento, Historico, Valor, "
           "ValorPago, DataReferencia, DataVencimento, Realizado, SaldoConta, SaldoRecDesp, SaldoCentroCusto, "
           "SaldoParceiroComl, SaldoGlobal FROM Lancamentos WHERE DataId >= "
        << TextLiteral(options.from.empty() ? "" : KeyOf(DateFrom(options.from)));
  if (!options.to.empty()) query << " AND DataId < " << TextLiteral(KeyOf(DayAfter(DateFrom(options.to))));
  if (!options.account.empty()) query << " AND CodConta LIKE " << TextLiteral(CheckedCode(options.account) + "*");
  for (const auto& [name, stored] : kStates) {
    if (options.state == name) query << " AND Realizado = " << TextLiteral(stored);
  }
  query << " ORDER BY DataId";
  return query.Text();
}

std::vector<OutputColumn> Columns() {
  return {{"Data", "Data"},
          {"Id", "Id", true},
          {"Conta", "CodConta"},
          {"Rec/Desp", "CodRecDesp"},
          {"Centro", "CodCentroCusto"},
          {"Parceiro", "IdParceiroComl", true},
          {"Documento", "Documento", false, false},
          {"Histórico", "Historico"},
          {"Valor", "Valor", true},
          {"Valor pago", "ValorPago", true, false},
          {"Referência", "DataReferencia", false, false},
          {"Vencimento", "DataVencimento", false, false},
          {"Situação", "Realizado"},
          {"Saldo conta", "SaldoConta", true},
          {"Saldo rec/desp", "SaldoRecDesp", true},
          {"Saldo centro", "SaldoCentroCusto", true},
          {"Saldo parceiro", "SaldoParceiroComl", true},
          {"Saldo global", "SaldoGlobal", true}};
}

std::string NameOfState(const Variant& stored) {
  std::string letter = Shown(stored);
  for (const auto& [name, value] : kStates) {
    if (letter == value) return name;
  }
  return letter;
}

// A balance of a centre or a partner says nothing on an entry that has none.
Variant PartialBalance(const db::Recordset& rows, const char* owner, const char* balance) {
  return IsNull(rows.Fields(owner).Value()) ? Variant(Null{}) : rows.Fields(balance).Value();
}

std::vector<Variant> RowOf(const db::Recordset& rows, const std::vector<OutputColumn>& columns) {
  std::vector<Variant> row;
  for (const OutputColumn& column : columns) {
    if (column.field == "Realizado") {
      row.emplace_back(NameOfState(rows.Fields("Realizado").Value()));
    } else if (column.field == "SaldoCentroCusto") {
      row.push_back(PartialBalance(rows, "CodCentroCusto", "SaldoCentroCusto"));
    } else if (column.field == "SaldoParceiroComl") {
      row.push_back(PartialBalance(rows, "IdParceiroComl", "SaldoParceiroComl"));
    } else {
      row.push_back(rows.Fields(column.field).Value());
    }
  }
  return row;
}

ExitCode Print(Tesovia& tesovia, const Options& options) {
  const Module1::ScopedRecordset rows(tesovia.AbrirRecordsetTS(QueryFor(options), db::dbOpenForwardOnly));
  const std::vector<OutputColumn> columns = Columns();
  const auto writer = MakeRowWriter(options.form, columns, std::cout);
  Currency in;
  Currency out;
  std::int64_t count = 0;
  for (; !rows->EndOfFile(); rows->MoveNext(), ++count) {
    writer->Write(RowOf(*rows, columns));
    const Currency amount = std::get<Currency>(rows->Fields("Valor").Value());
    (amount < Currency() ? out : in) += amount;
  }
  writer->Finish();
  if (options.form.IsTable()) {
    std::cout << '\n'
              << Count(count, "lançamento", "lançamentos") << "; entradas " << Amount(in) << "; saídas " << Amount(out)
              << ".\n";
  }
  return kDone;
}

}  // namespace

void AddExtrato(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("extrato", "Mostra lançamentos com os cinco saldos depois de cada um");
  auto options = std::make_shared<Options>();
  command->add_option("--de", options->from, "Primeiro dia")->type_name("DATA")->check(NotBlank);
  command->add_option("--ate", options->to, "Último dia")->type_name("DATA")->check(NotBlank);
  command->add_option("--conta", options->account, "Só desta conta e de suas subcontas")
      ->type_name("CODIGO")
      ->check(NotBlank);
  command->add_option("--situacao", options->state, "Só os lançamentos nesta situação")
      ->type_name("aberto|realizado|nao-realizado|estornado")
      ->check(CLI::IsMember({"aberto", "realizado", "nao-realizado", "estornado"}).description(""));
  options->form.AddOptions(*command);
  command->callback([&context, options] {
    context.action = [&context, options] {
      QueryFor(*options);  // wrong options are told before a password is asked for
      return Print(context.Login(), *options);
    };
  });
}

}  // namespace tsv::cli
