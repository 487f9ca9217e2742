#include <CLI/CLI.hpp>
#include <iostream>
#include <iterator>

#include "Commands.h"
#include "Rows.h"
#include "Texts.h"
#include "common/Recordsets.h"

namespace tsv::cli {
namespace {

ExitCode Print(Tesovia& tesovia, const std::string& sql, const OutputForm& form) {
  const Module1::ScopedRecordset rows(tesovia.AbrirRecordsetTS(sql, db::dbOpenForwardOnly));
  const auto writer = MakeRowWriter(form, ColumnsOf(*rows), std::cout);
  std::int64_t count = 0;
  for (; !rows->EndOfFile(); rows->MoveNext(), ++count) writer->Write(CurrentRow(*rows));
  writer->Finish();
  if (form.IsTable()) std::cout << '\n' << Count(count, "linha", "linhas") << ".\n";
  return kDone;
}

}  // namespace

void AddConsultar(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("consultar", "Executa um SELECT em Jet SQL, só para leitura");
  auto sql = std::make_shared<std::string>();
  auto form = std::make_shared<OutputForm>();
  command->add_option("SQL", *sql, "O SELECT; - lê da entrada padrão")->type_name("")->required();
  form->AddOptions(*command);
  command->callback([&context, sql, form] {
    context.action = [&context, sql, form] {
      if (*sql == "-") sql->assign(std::istreambuf_iterator<char>(std::cin), {});
      return Print(context.Login(), *sql, *form);
    };
  });
}

}  // namespace tsv::cli
