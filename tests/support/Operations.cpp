#include "support/Operations.h"
#include "support/Messages.h"

#include <algorithm>
#include <string_view>

#include "types/Conversions.h"

namespace tsv::test {

namespace {

constexpr const char* kPosting = "em Tesovia.FazerLancamentoTS ";
constexpr const char* kDeletion = " Em Tesovia.ExcluirLancamentoTS";
constexpr const char* kLegSettlement = "em Tesovia_BaixaDeTransferencia";
constexpr const char* kReversal = "em Tesovia.EstornarLancamentoTS";
constexpr const char* kLegReversal = "em Tesovia_EstornoDeTransferencia";
constexpr const char* kTransfer = "em Tesovia.FazerTransferenciaTS";

struct Refusal {
  char letter;
  std::int32_t number;
  std::string_view origin;
  std::string_view description;

  bool Says(const Erro& erro) const { return number == erro.Numero() && description == erro.Descricao(); }
};

// v: not the version that was seen; l: the serial was lost; b: other balances than those read; u: not the row that was
// read; j: no row for the journal; m: the other leg is missing; i: deactivated; e: the account of an incoming leg.
constexpr Refusal kRefusals[] = {
    {'b', TS_ERRO_LOGIN, "em Module1.VerificarApos", ""},
    {'l', TS_ERRO_LANCAMENTO, kPosting, kLostSerial},
    {'i', TS_ERRO_LOGIN, kPosting, ""},
    {'v', TS_ERRO_EXCLUSAO, kDeletion, kDeletionOfOther},
    {'u', TS_ERRO_EXCLUSAO, kDeletion, kNotDeleted},
    {'j', TS_ERRO_EXCLUSAO, kDeletion, kNoDeletionJournal},
    {'m', TS_ERRO_EXCLUSAO, kDeletion, kNoOtherLeg},
    {'v', TS_ERRO_BAIXA, "em Tesovia.BaixarLancamentoTS", kSettlementOfOther},
    {'u', TS_ERRO_BAIXA, "em Tesovia.BaixarTotal", kNotSettled},
    {'u', TS_ERRO_BAIXA, "em Tesovia.BaixarParcial", kNotSettled},
    {'u', TS_ERRO_BAIXA, "em Tesovia.BaixarNaoRealizado", kNotSettled},
    {'u', TS_ERRO_BAIXA, kLegSettlement, kLegNotSettled},
    {'m', TS_ERRO_BAIXA, kLegSettlement, kNoOtherLeg},
    {'v', TS_ERRO_ESTORNO, kReversal, kReversalOfOther},
    {'l', TS_ERRO_ESTORNO, kReversal, kLostSerial},
    {'u', TS_ERRO_ESTORNO, kReversal, kNotReversed},
    {'i', TS_ERRO_ESTORNO, kReversal, kReversalDeactivated},
    {'u', TS_ERRO_ESTORNO, kLegReversal, kNotReversed},
    {'i', TS_ERRO_ESTORNO, kLegReversal,
     "Não foi possível incluir o estorno.\nPossível causa: a conta 'CONTA 1.1' foi desativada."},
    {'j', TS_ERRO_ESTORNO, kLegReversal, kNoReversalJournal},
    {'m', TS_ERRO_ESTORNO, kLegReversal, kNoOtherLeg},
    {'l', TS_ERRO_TRANSFERENCIA, kTransfer, kLostSerial},
    {'i', TS_ERRO_TRANSFERENCIA, kTransfer, kNotTransferredFrom},
    {'e', TS_ERRO_TRANSFERENCIA, kTransfer, kNotTransferredTo},
};

char LetterOf(const Erro& erro) {
  if (erro.Numero() == 0) return '.';
  for (const Refusal& each : kRefusals) {
    if (each.Says(erro) && each.origin == erro.Origem()) return each.letter;
  }
  ADD_FAILURE() << erro;
  return '?';
}

Ids Transfer(Tesovia& ledger, int day) {
  Ids made;
  for (const auto& leg : ledger.FazerTransferenciaTS(TransferOf("1.1", "1.2", Cents(500), Day(2008, 7, day)))) {
    made.push_back(leg->Id());
  }
  return made;
}

std::int32_t NewestVersion(std::int32_t id) {
  const auto row = CurrentSession().BancoDeDados->OpenRecordset("SELECT IdConcorrencia FROM Lancamentos WHERE Id = " +
                                                                std::to_string(id));
  return row->EndOfFile() ? 0 : ToLong(row->Fields("IdConcorrencia").Value());
}

}  // namespace

bool IsRefusal(const Erro& erro) {
  return std::ranges::any_of(kRefusals, [&](const Refusal& each) { return each.Says(erro); });
}

Operation Posted(std::string name, int day) {
  return {std::move(name), 0, [day](Tesovia& ledger, std::int32_t) {
            return Ids{Post(ledger, {Day(2008, 7, day), Cents(40), "1.1", "0", "1", 1})->Id()};
          }};
}

Operation Deleted(std::string name, std::int32_t id) {
  return {std::move(name), id,
          [id](Tesovia& ledger, std::int32_t version) { return ledger.ExcluirLancamentoTS(id, version), Ids(); }};
}

Operation Settled(std::string name, std::int32_t id, TIPO_BAIXA kind, std::int64_t cents, Date date) {
  return {std::move(name), id, [=](Tesovia& ledger, std::int32_t version) {
            CBaixa request = SettlementOf(id, kind, Cents(cents), date, version);
            ledger.BaixarLancamentoTS(request);
            return Ids();
          }};
}

Operation Reversed(std::string name, std::int32_t id) {
  return {std::move(name), id, [id](Tesovia& ledger, std::int32_t version) {
            const auto made = ledger.EstornarLancamentoTS("Engano", id, version);
            return made ? Ids{made->Id()} : Ids();
          }};
}

Operation Transferred(std::string name) {
  return {std::move(name), 0, [](Tesovia& ledger, std::int32_t) { return Transfer(ledger, 12); }};
}

BusyLedger::BusyLedger() {
  OnAnotherThread([this] {
    CurrentSession().host = std::make_shared<RecordingHost>();
    Tesovia ledger;
    ledger.InicializarTS(Path(), "ana", "segredo");
    Post(ledger, {Day(2008, 7, 10), Cents(1000), "1.1", "0", "1", 1});
    Post(ledger, {Day(2008, 7, 5), Cents(-300), "1.1", "00", "1.1", 1});
    Transfer(ledger, 8);
    Post(ledger, {Day(2008, 7, 20), Cents(70), "1", "0", "1", 1});
  });
  Keep();
}

char BusyLedger::Run(const Operation& operation, std::shared_ptr<db::StatementObserver> observer,
                     bool hasSeenNewest) const {
  char letter = '?';
  OnAnotherThread([&] {
    CurrentSession().host = std::make_shared<RecordingHost>();
    Tesovia ledger;
    ledger.InicializarTS(Path(), "ana", "segredo");
    const std::int32_t version = hasSeenNewest ? NewestVersion(operation.id) : 0;
    CurrentSession().BancoDeDados->Observe(observer);
    letter = LetterOf(ErrorOf([&] { operation.run(ledger, version); }));
  });
  return letter;
}

std::vector<Operation> EveryOperation() {
  return {Posted("posting", 12),
          Deleted("deletion", 1),
          Settled("full settlement", 1, BAIXA_TOTAL, 1000, Day(2008, 7, 15)),
          Settled("partial settlement", 1, BAIXA_PARCIAL, 400, Day(2008, 7, 6)),
          Settled("not realised", 1, BAIXA_NAO_REALIZADO, 1000, Day(2008, 7, 10)),
          Reversed("reversal", 1),
          Transferred("transfer"),
          Deleted("deletion of 3", 3),
          Settled("settlement of 3", 3, BAIXA_TOTAL, -500, Day(2008, 7, 8)),
          Settled("3 not realised", 3, BAIXA_NAO_REALIZADO, -500, Day(2008, 7, 8)),
          Reversed("reversal of 3", 3)};
}

}  // namespace tsv::test
