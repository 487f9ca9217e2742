#include <CLI/CLI.hpp>
#include <iostream>

#include "Arguments.h"
#include "Commands.h"
#include "EntryTable.h"
#include "Registration.h"
#include "Rows.h"
#include "Texts.h"
#include "common/Recordsets.h"

namespace tsv::cli {
namespace {

using Module1::Statement;
using Module1::TextLiteral;

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
  Statement query = SelectEntries();
  query << "WHERE DataId >= " << TextLiteral(options.from.empty() ? "" : KeyOf(DateFrom(options.from)));
  if (!options.to.empty()) query << " AND DataId < " << TextLiteral(KeyOf(DayAfter(DateFrom(options.to))));
  if (!options.account.empty()) query << " AND CodConta LIKE " << TextLiteral(CheckedCode(options.account) + "*");
  for (const auto& [name, stored] : kStates) {
    if (options.state == name) query << " AND Realizado = " << TextLiteral(stored);
  }
  query << " ORDER BY DataId";
  return query.Text();
}

ExitCode Print(Tesovia& tesovia, const Options& options) {
  const Module1::ScopedRecordset rows(tesovia.AbrirRecordsetTS(QueryFor(options), db::dbOpenForwardOnly));
  const auto writer = MakeRowWriter(options.form, EntryColumns(), std::cout);
  Currency in;
  Currency out;
  std::int64_t count = 0;
  std::int64_t outside = 0;
  for (; !rows->EndOfFile(); rows->MoveNext(), ++count) {
    writer->Write(EntryRow(*rows));
    const Currency amount = std::get<Currency>(rows->Fields("Valor").Value());
    if (Shown(rows->Fields("Realizado").Value()) == "N") {
      ++outside;
    } else {
      (amount < Currency() ? out : in) += amount;
    }
  }
  writer->Finish();
  if (options.form.IsTable()) {
    std::cout << '\n'
              << Count(count, "lançamento", "lançamentos") << "; entradas " << Amount(in) << "; saídas " << Amount(out)
              << (outside == 0 ? "" : "; fora dos saldos, " + Count(outside, "não realizado", "não realizados"))
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
