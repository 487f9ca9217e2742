#include <gtest/gtest.h>

#include "support/Messages.h"
#include "support/Refusals.h"

using namespace tsv;
using namespace tsv::test;

namespace {

constexpr const char* kOrigin = "em Tesovia.EstornarLancamentoTS";

using ReversalTest = LedgerTest;

TEST_F(ReversalTest, RefusalsChangeNothing) {
  const auto saying = [](const std::string& history, std::int32_t id = 1) -> Action {
    return [=](Tesovia& ledger) { ledger.EstornarLancamentoTS(history, id, 0); };
  };
  const Action reverse = saying("x");
  const Action quote = saying("'");
  const std::string tooLong = std::string(50, 'x') + "ç";
  const std::string changed = "UPDATE Lancamentos SET IdConcorrencia = 1";
  const Refusals refusals([](Tesovia& ledger) {
    test::Post(ledger, {Day(2008, 7, 5), Cents(10000), "1.1", "00", "1.1", 1});
    test::Post(ledger, {Day(2008, 7, 2), Cents(300), "1.1", "00"});
  });
  refusals.Expect(TS_ERRO_ESTORNO, kOrigin, kReversalOfOther, {saying("'", 9), {quote, changed}});
  refusals.Expect(TS_ERRO_ESTORNO, kOrigin, kReversalOfUnrealised, {{quote, "UPDATE Lancamentos SET Realizado = 'N'"}});
  refusals.Expect(TS_ERRO_ESTORNO, kOrigin, "Caracteres de aspas duplas ou simples não são permitidos em histórico.",
                  {saying("\"" + tooLong), saying("''"), quote});
  refusals.Expect(TS_ERRO_ESTORNO, kOrigin, kNoReversalHistory, {saying("   "), saying("")});
  refusals.Expect(TS_ERRO_ESTORNO, kOrigin, "Erro: histórico com mais de 50 caracteres.", {saying(tooLong)});
  refusals.Expect(TS_ERRO_ESTORNO, kOrigin, kLostSerial, {{reverse, Others("UPDATE Serial SET Serial = 9")}});
  refusals.Expect(TS_ERRO_ESTORNO, kOrigin, kNotReversed,
                  {{reverse, "UPDATE Lancamentos SET Estornado = True"}, {reverse, Others(changed)}});
  refusals.Expect(TS_ERRO_ESTORNO, kOrigin, kNoReversalJournal,
                  {{reverse, Within("INSERT INTO HISTORICOS", "DELETE * FROM Lancamentos WHERE Id = 1")},
                   {reverse, Within("INSERT INTO HISTORICOS", "DELETE * FROM Lancamentos WHERE Id = 3", 2)}});
  refusals.Expect(TS_ERRO_ESTORNO, kOrigin, kReversalDeactivated,
                  {{reverse, "UPDATE Contas SET Inativa = True"},
                   {reverse, Others("UPDATE ParceirosComerciais SET Inativo = True")}});
  refusals.Expect(6, kOrigin, TextOf(RuntimeError::Overflow), {{reverse, "UPDATE Serial SET Serial = 2147483647"}});
  refusals.Expect(TS_ERRO_LOGIN, "em Module1.VerificarApos", "", {{reverse, OthersDelete(2)}});
  refusals.Expect(3043, kOrigin, "disco", {{reverse, DiskFails("INSERT INTO LANCAMENTOS")}});
  refusals.Expect(3043, "em CDaoTrans_ComTrans", "disco", {{reverse, DiskFails("CommitTrans")}});
}

TEST_F(ReversalTest, ARefusalCarriesTheLastOriginOfTheThread) {
  const auto transfer = [](Tesovia& ledger) { ledger.FazerTransferenciaTS(CTransferencia()); };
  const auto reverse = [](Tesovia& ledger) { ledger.EstornarLancamentoTS("x", 9, 0); };
  EXPECT_EQ(ErrorOf([&] { transfer(tesovia); }).Origem(), "em Tesovia.FazerTransferenciaTS");
  ExpectErro(ErrorOf([&] { reverse(tesovia); }), TS_ERRO_ESTORNO, kReversalOfOther, "em Tesovia.FazerTransferenciaTS");
  EXPECT_EQ(ErrorOf([&] { tesovia.ExcluirLancamentoTS(9, 0); }).Origem(), " Em Tesovia.ExcluirLancamentoTS");
  ExpectErro(ErrorOf([&] { reverse(tesovia); }), TS_ERRO_ESTORNO, kReversalOfOther,
             kOrigin);  // that one it does not keep
}

}  // namespace
