#include <gtest/gtest.h>

#include <algorithm>

#include "db/EngineError.h"
#include "support/Messages.h"
#include "support/Refusals.h"
#include "support/Statements.h"

using namespace tsv;
using namespace tsv::test;

namespace {

CTransferencia Request(std::string_view from = "1.1", std::string_view to = "B", Currency amount = Cents(-15000)) {
  return TransferOf(from, to, amount, kMoment);
}

using TransferTest = LedgerTest;

TEST_F(TransferTest, IsPosted) {
  recorder->before = [&](std::string_view text) {
    EXPECT_TRUE(!host->events.empty() && host->events.back() == "busy") << text;
  };
  Watch();
  const Collection legs = tesovia.FazerTransferenciaTS(Request());
  recorder->before = nullptr;
  EXPECT_EQ(legs.Count(), 2);
  EXPECT_EQ(legs.Item(1)->Transferencia(), 1);  // the outgoing one first
  // The legs may be read back on either side of the commit.
  std::sort(recorder->ran.end() - 2, recorder->ran.end(), [](const auto& a, const auto& b) { return a.text < b.text; });
  ExpectStatements(*recorder, "transfer");
  EXPECT_EQ(host->events.back(), "normal");
  EXPECT_EQ(std::count(host->events.begin(), host->events.end(), "discard"), 2);
}

const Action kGiven = [](Tesovia& ledger) {
  test::Post(ledger, {Day(2008, 7, 2), Cents(300), "1.1", "0"});
  ledger.FazerTransferenciaTS(Request());
};
const std::string kDeactivated = "UPDATE Contas SET Inativa = True";
const std::string kOfIncoming = " WHERE Codigo = 'B'";
const std::string kGone = "DELETE * FROM Lancamentos WHERE Id = 3";

TEST_F(TransferTest, RefusedPostingsChangeNothing) {
  const auto asking = [](const CTransferencia& request) -> Action {
    return [=](Tesovia& ledger) { ledger.FazerTransferenciaTS(request); };
  };
  const Action post = asking(Request());
  CTransferencia quoted = Request();
  quoted.HistoricoEntrada("copo d'água");
  const char* origin = "em Tesovia.FazerTransferenciaTS";
  const std::string taken = "UPDATE Serial SET Serial = 9";
  const Refusals refusals(kGiven);
  refusals.Expect(
      TS_ERRO_TRANSFERENCIA, origin, kNotTransferredFrom,
      {asking(CTransferencia()), asking(Request("9")), asking(Request("8", "77")), {post, Others(kDeactivated)}});
  refusals.Expect(TS_ERRO_TRANSFERENCIA, origin, kNotTransferredTo,
                  {asking(Request("1", "77")),
                   asking(Request("1", "9")),
                   asking(Request("1", "8")),
                   {post, Others(kDeactivated + kOfIncoming)}});
  refusals.Expect(TS_ERRO_TRANSFERENCIA, origin, kLostSerial,
                  {{post, Others(taken)}, {post, Within("UPDATE Serial", taken, 2)}});
  refusals.Expect(
      TS_ERRO_TRANSFERENCIA, origin,
      "Não foi possível gravar o histórico da transferência. Transferência cancelada.\nPossível causa: a conta foi "
      "desativada.",
      {{post, Within("INSERT INTO HISTORICOS", kDeactivated)},
       {post, Within("INSERT INTO HISTORICOS", kDeactivated, 2)}});
  refusals.Expect(TS_ERRO_LOGIN, "em Module1.VerificarApos", "",
                  {{post, OthersDelete(1)}, asking(Request("1", "B", Currency::FromTenThousandths(1'0050)))});
  refusals.Expect(3075, origin, db::TextOf(db::EngineError::SyntaxInExpression, ""), {asking(quoted)});
  refusals.Expect(6, origin, TextOf(RuntimeError::Overflow), {{post, "UPDATE Serial SET Serial = 2147483647"}});
  refusals.Expect(3043, origin, "disco", {{post, DiskFails("INSERT INTO TRANSFERENCIAS")}});
  refusals.Expect(3043, "em CDaoTrans_ComTrans", "disco", {{post, DiskFails("CommitTrans")}});
}

TEST_F(TransferTest, RefusedDeletionsChangeNothing) {
  const Action remove = [](Tesovia& ledger) { ledger.ExcluirLancamentoTS(2, 0); };
  const char* origin = " Em Tesovia.ExcluirLancamentoTS";
  const Refusals refusals(kGiven);
  refusals.Expect(TS_ERRO_EXCLUSAO, origin, kNoOtherLeg, {{remove, kGone}, {remove, "DELETE * FROM Transferencias"}});
  refusals.Expect(TS_ERRO_EXCLUSAO, origin, kNotDeleted,
                  {{remove, "UPDATE Lancamentos SET Estornado = True WHERE Id = 3"},
                   {remove, Others("UPDATE Lancamentos SET IdConcorrencia = 1 WHERE Id = 3")}});
  refusals.Expect(TS_ERRO_EXCLUSAO, origin, kNoDeletionJournal, {{remove, Others(kGone)}});
  refusals.Expect(3043, origin, "disco", {{remove, DiskFails("UPDATE Lancamentos", 2)}});
}

TEST_F(TransferTest, RefusedReversalsChangeNothing) {
  const auto saying = [](const std::string& history, std::int32_t id) -> Action {
    return [=](Tesovia& ledger) { ledger.EstornarLancamentoTS(history, id, 0); };
  };
  const Action reverse = saying("x", 2);
  const Action quote = saying("\"", 2);
  const char* origin = "em Tesovia_EstornoDeTransferencia";
  const std::string unrealised = "UPDATE Lancamentos SET Realizado = 'N' WHERE Id = ";
  const std::string deleted = "UPDATE Contas SET Excluida = True";
  const Refusals refusals(kGiven);
  refusals.Expect(TS_ERRO_ESTORNO, "em Tesovia.EstornarLancamentoTS", kReversalOfUnrealised,
                  {{quote, unrealised + "2"}});
  refusals.Expect(TS_ERRO_ESTORNO, origin, kNoOtherLeg, {{quote, kGone}});
  refusals.Expect(TS_ERRO_ESTORNO, origin,
                  "Caracteres de aspas duplas ou simples não são permitidos em histórico. Favor tentar novamente.",
                  {quote, saying("''", 3)});
  refusals.Expect(TS_ERRO_ESTORNO, origin, kNoReversalHistory, {saying("  ", 3)});
  refusals.Expect(TS_ERRO_ESTORNO, origin, kLostSerial,
                  {{reverse, Within("UPDATE Serial", "UPDATE Serial SET Serial = 9")}});
  refusals.Expect(TS_ERRO_ESTORNO, origin, kNotReversed,
                  {{reverse, unrealised + "3"},
                   {saying("x", 3), Others("UPDATE Lancamentos SET IdConcorrencia = 1 WHERE Id = 2")}});
  refusals.Expect(TS_ERRO_ESTORNO, origin,
                  "Não foi possível incluir o estorno.\nPossível causa: a conta 'CONTA 1.1' foi desativada.",
                  {{reverse, kDeactivated}, {reverse, deleted}});
  refusals.Expect(TS_ERRO_ESTORNO, origin,
                  "Não foi possível incluir o estorno.\nPossível causa: a conta 'CONTA B' foi desativada.",
                  {{reverse, kDeactivated + kOfIncoming}});
  refusals.Expect(TS_ERRO_ESTORNO, origin, kNoReversalJournal,
                  {{reverse, deleted + kOfIncoming}, {reverse, Within("INSERT INTO HISTORICOS", deleted, 2)}});
  refusals.Expect(3163, origin, db::TextOf(db::EngineError::TextTooLong, "Lancamentos.Historico"),
                  {saying(std::string(51, 'x'), 2)});
  refusals.Expect(TS_ERRO_LOGIN, "em Module1.VerificarApos", "",
                  {{reverse, Within("ParQryLast", "UPDATE Lancamentos SET SaldoGlobal = 1", 2)}});
  refusals.Expect(3043, "em CDaoTrans_ComTrans", "disco", {{reverse, DiskFails("CommitTrans")}});
}

}  // namespace
