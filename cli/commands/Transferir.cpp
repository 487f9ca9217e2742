#include <CLI/CLI.hpp>

#include "Arguments.h"
#include "Asking.h"
#include "Commands.h"
#include "EntryTable.h"
#include "Refusals.h"
#include "types/Text.h"

namespace tsv::cli {
namespace {

struct Given {
  std::string from;
  std::string to;
  std::string valor;
  std::string data;
  std::string historico;
  std::string historicoSaida;
  std::string historicoEntrada;
  std::string documento;
  std::string documentoSaida;
  std::string documentoEntrada;
};

const std::string& Either(const std::string& own, const std::string& common) { return own.empty() ? common : own; }

void Complete(Given& given) {
  given.from = GivenOrAsked(given.from, "Conta de onde sai", "--de CONTA");
  given.to = GivenOrAsked(given.to, "Conta para onde vai", "--para CONTA");
  given.valor = GivenOrAsked(given.valor, "Valor", "--valor VALOR");
  if (given.historicoSaida.empty() || given.historicoEntrada.empty()) {
    given.historico = GivenOrAsked(given.historico, "Histórico",
                                   "--historico TEXTO, ou --historico-saida e "
                                   "--historico-entrada");
  }
}

CTransferencia RequestOf(const Given& given) {
  for (const std::string* text :
       {&given.from, &given.to, &given.historico, &given.historicoSaida, &given.historicoEntrada, &given.documento,
        &given.documentoSaida, &given.documentoEntrada}) {
    CheckText(*text);
  }
  CTransferencia request;
  request.CodContaOrigem(given.from);
  request.CodContaDestino(given.to);
  request.Valor(AmountFrom(given.valor));
  request.DataDaTransferencia(given.data.empty() ? Today() : DateFrom(given.data));
  request.HistoricoSaida(Either(given.historicoSaida, given.historico));
  request.HistoricoEntrada(Either(given.historicoEntrada, given.historico));
  request.DocumentoSaida(Either(given.documentoSaida, given.documento));
  request.DocumentoEntrada(Either(given.documentoEntrada, given.documento));
  if (request.Valor() <= Currency()) throw Failure(kUsage, "O valor de uma transferência é maior do que zero.");
  if (text::CompareFolded(request.CodContaOrigem(), request.CodContaDestino()) == 0) {
    throw Failure(kUsage, "Uma transferência é entre duas contas: --de e --para são a mesma.");
  }
  return request;
}

ExitCode Transfer(Context& context, Given given) {
  Complete(given);
  const CTransferencia request = RequestOf(given);
  Tesovia& tesovia = context.Login();
  std::vector<std::int32_t> ids;
  try {
    for (const auto& leg : Patiently(context, [&] { return tesovia.FazerTransferenciaTS(request); })) {
      ids.push_back(leg->Id());
    }
  } catch (const Erro& erro) {
    RaiseWithCause(erro, {{request.CodContaOrigem(), {}, {}, {}}, {request.CodContaDestino(), {}, {}, {}}});
  }
  ShowEntries(tesovia, "Transferência gravada:", ids);
  return kDone;
}

void AddText(CLI::App& command, const char* name, std::string& value, const char* help) {
  command.add_option(name, value, help)->type_name("TEXTO")->check(NotBlank);
}

}  // namespace

void AddTransferir(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("transferir", "Transfere um valor de uma conta para outra");
  auto given = std::make_shared<Given>();
  command->add_option("--de", given->from, "Conta de onde sai")->type_name("CONTA")->check(NotBlank);
  command->add_option("--para", given->to, "Conta para onde vai")->type_name("CONTA")->check(NotBlank);
  command->add_option("--valor", given->valor, "Por exemplo 150,00")->type_name("VALOR")->check(NotBlank);
  command->add_option("--data", given->data, "Data da transferência (sem a opção, hoje)")
      ->type_name("DATA")
      ->check(NotBlank);
  AddText(*command, "--historico", given->historico, "Dos dois lançamentos, até 50 caracteres");
  AddText(*command, "--historico-saida", given->historicoSaida, "Só do lançamento de saída");
  AddText(*command, "--historico-entrada", given->historicoEntrada, "Só do lançamento de entrada");
  AddText(*command, "--documento", given->documento, "Dos dois lançamentos, até 15 caracteres");
  AddText(*command, "--documento-saida", given->documentoSaida, "Só do lançamento de saída");
  AddText(*command, "--documento-entrada", given->documentoEntrada, "Só do lançamento de entrada");
  command->callback([&context, given] { context.action = [&context, given] { return Transfer(context, *given); }; });
}

}  // namespace tsv::cli
