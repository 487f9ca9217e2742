#include <CLI/CLI.hpp>
#include <iostream>

#include "Arguments.h"
#include "Commands.h"
#include "Rows.h"
#include "Texts.h"
#include "common/Recordsets.h"
#include "common/Statement.h"

namespace tsv::cli {
namespace {

using Module1::DateLiteral;
using Module1::NumberLiteral;
using Module1::Statement;

struct Options {
  std::string from;
  std::string to;
  std::string id;
  OutputForm form;
};

const std::vector<OutputColumn>& Columns() {
  static const std::vector<OutputColumn> columns = {{"Quando", "DataHora"},
                                                    {"Usuário", "DesUsuario"},
                                                    {"Ação", "IdAcao"},
                                                    {"Id", "Id", true},
                                                    {"Data", "Data"},
                                                    {"Conta", "CodConta"},
                                                    {"Descrição", "DesConta"},
                                                    {"Rec/Desp", "CodRecDesp"},
                                                    {"Descrição", "DesMovimentacao"},
                                                    {"Centro", "CodCentroCusto"},
                                                    {"Parceiro", "NomeParceiro"},
                                                    {"Documento", "Documento", false, false},
                                                    {"Histórico", "Historico"},
                                                    {"Valor", "Valor", true},
                                                    {"Realizado", "Realizado", false, false}};
  return columns;
}

std::string QueryFor(const Options& options) {
  CheckPeriod(options.from, options.to);
  Statement query;
  query << "SELECT DataHora, DesUsuario, IdAcao, Id, Data, CodConta, DesConta, CodRecDesp, DesMovimentacao, "
           "CodCentroCusto, NomeParceiro, Documento, Historico, Valor, Realizado FROM HistoricosDeLancamentos "
           "WHERE Id >= 0";
  if (!options.from.empty()) query << " AND DataHora >= " << DateLiteral(DateFrom(options.from));
  if (!options.to.empty()) query << " AND DataHora < " << DateLiteral(DayAfter(DateFrom(options.to)));
  if (!options.id.empty()) query << " AND Id = " << NumberLiteral(NumberFrom(options.id));
  // What happened within one second, in the order in which it can happen to an entry: settled, reversed, deleted.
  query << " ORDER BY DataHora, Id, IIf(IdAcao = 9, 4, IIf(IdAcao = 3, 10, IdAcao))";
  return query.Text();
}

// Legs of transfers are settled under one code, whether or not they were realised.
std::string NameOfAction(std::uint8_t code, const std::string& state) {
  switch (code) {
    case 1:
      return "inclusão";
    case 3:
      return "exclusão";
    case 4:
      return state == "N" ? NameOfAction(5, state) : "baixa total";
    case 5:
      return "baixa como não realizado";
    case 6:
      return "estorno";
    case 9:
      return "baixa parcial";
    default:
      return "ação " + std::to_string(code);
  }
}

ExitCode Print(Tesovia& tesovia, const Options& options) {
  const Module1::ScopedRecordset rows(tesovia.AbrirRecordsetTS(QueryFor(options), db::dbOpenForwardOnly));
  const auto writer = MakeRowWriter(options.form, Columns(), std::cout);
  std::int64_t count = 0;
  for (; !rows->EndOfFile(); rows->MoveNext(), ++count) {
    std::vector<Variant> row = CurrentRow(*rows);
    row[2] = NameOfAction(std::get<std::uint8_t>(row[2]), Shown(row.back()));
    writer->Write(row);
  }
  writer->Finish();
  if (options.form.IsTable()) std::cout << '\n' << Count(count, "registro", "registros") << ".\n";
  return kDone;
}

}  // namespace

void AddDiario(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("diario", "Mostra o diário: quem fez o quê, e quando");
  auto options = std::make_shared<Options>();
  command->add_option("--de", options->from, "Primeiro dia (da ação)")->type_name("DATA")->check(NotBlank);
  command->add_option("--ate", options->to, "Último dia (da ação)")->type_name("DATA")->check(NotBlank);
  command->add_option("--lancamento", options->id, "Só deste lançamento")->type_name("ID");
  options->form.AddOptions(*command);
  command->callback([&context, options] {
    context.action = [&context, options] {
      QueryFor(*options);  // wrong options are told before a password is asked for
      return Print(context.Login(), *options);
    };
  });
}

}  // namespace tsv::cli
