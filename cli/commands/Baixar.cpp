#include <CLI/CLI.hpp>
#include <optional>

#include "Arguments.h"
#include "Asking.h"
#include "Commands.h"
#include "EntryChange.h"
#include "types/Text.h"

namespace tsv::cli {
namespace {

struct Given {
  EntryChoice choice;
  bool inFull = false;
  bool inPart = false;
  bool notRealised = false;
  std::string data;
  std::string valor;
};

TIPO_BAIXA KindOf(const Given& given) {
  if (given.inFull) return BAIXA_TOTAL;
  if (given.inPart) return BAIXA_PARCIAL;
  if (given.notRealised) return BAIXA_NAO_REALIZADO;
  const char* const options = "--total, --parcial ou --nao-realizado";
  const std::string answer = text::Lower(AskFor("Baixa total, parcial ou não realizado? (t/p/n)", options));
  if (answer == "t") return BAIXA_TOTAL;
  if (answer == "p") return BAIXA_PARCIAL;
  if (answer == "n") return BAIXA_NAO_REALIZADO;
  throw Failure(kUsage, std::string("Informe ") + options + ".");
}

std::optional<Currency> AmountOf(const Given& given, TIPO_BAIXA kind) {
  const std::string text =
      kind == BAIXA_PARCIAL ? GivenOrAsked(given.valor, "Valor realizado", "--valor VALOR") : given.valor;
  if (text.empty()) return std::nullopt;
  const Currency amount = AmountFrom(text);
  if (amount == Currency()) throw Failure(kUsage, "O valor realizado não pode ser zero; veja --nao-realizado.");
  return amount;
}

// A transfer's legs keep their day. What did not happen keeps its own day and amount.
Variant DayOf(const Given& given, TIPO_BAIXA kind, const CLancamento& entry) {
  if (!given.data.empty()) return DateFrom(given.data);
  if (kind == BAIXA_NAO_REALIZADO || entry.Transferencia() != 0) return entry.Data();
  return Today();
}

const char* TitleOf(TIPO_BAIXA kind) {
  if (kind == BAIXA_NAO_REALIZADO) return "Depois da baixa como não realizado:";
  return kind == BAIXA_PARCIAL ? "Depois da baixa parcial:" : "Depois da baixa total:";
}

ExitCode Settle(Context& context, Given given) {
  given.choice.Complete();
  const TIPO_BAIXA kind = KindOf(given);
  if (kind == BAIXA_NAO_REALIZADO && !(given.data.empty() && given.valor.empty())) {
    throw Failure(kUsage, "O que não se realizou mantém data e valor: --data e --valor não valem com --nao-realizado.");
  }
  const std::optional<Currency> amount = AmountOf(given, kind);
  if (!given.data.empty()) DateFrom(given.data);

  EntryChange change(context, given.choice);
  CBaixa baixa;
  baixa.TipoBaixa(kind);
  baixa.IdLancamento(change.Entry().Id());
  baixa.IdConcorrencia(change.Version());
  baixa.DataRealizacao(DayOf(given, kind, change.Entry()));
  baixa.ValorBaixado(amount.value_or(change.Entry().Valor()));
  change.Run([&] { return change.Ledger().BaixarLancamentoTS(baixa); });
  change.ShowAfter(TitleOf(kind));
  return kDone;
}

}  // namespace

void AddBaixar(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("baixar", "Baixa uma previsão: realizada toda, em parte, ou não realizada");
  auto given = std::make_shared<Given>();
  given->choice.AddOptions(*command);
  auto* inFull = command->add_flag("--total", given->inFull, "Realizada por todo o valor");
  auto* inPart = command->add_flag("--parcial", given->inPart, "Realizada por --valor; o resto não fica em aberto");
  auto* notRealised = command->add_flag("--nao-realizado", given->notRealised, "Não aconteceu: sai de todos os saldos");
  inPart->excludes(inFull);
  notRealised->excludes(inFull)->excludes(inPart);
  command->add_option("--data", given->data, "Dia da realização (sem a opção, hoje; numa transferência, o dela)")
      ->type_name("DATA")
      ->check(NotBlank);
  command->add_option("--valor", given->valor, "Valor realizado, com o sinal do lançamento")
      ->type_name("VALOR")
      ->check(NotBlank);
  command->callback([&context, given] { context.action = [&context, given] { return Settle(context, *given); }; });
}

}  // namespace tsv::cli
