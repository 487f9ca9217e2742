#include <gtest/gtest.h>

#include <tuple>

#include "Loading.h"
#include "Requests.h"
#include "support/Messages.h"
#include "support/Refusals.h"

using namespace tsv;
using namespace tsv::test;

namespace {

using SettlementTest = LedgerTest;

CBaixa Request(std::int32_t id, std::int32_t kind, std::int64_t cents, const Variant& date) {
  return SettlementOf(id, static_cast<TIPO_BAIXA>(kind), Cents(cents), date);
}

CTransferencia Transfer() { return TransferOf("1.1", "B", Cents(10000), kMoment); }

TEST_F(SettlementTest, AnotherKindDoesNothing) {
  Post({Day(2008, 7, 5), Cents(100), "1.1", "0"});
  tesovia.FazerTransferenciaTS(Transfer());
  host->events.clear();
  Watch();
  for (CBaixa request : {Request(1, 0, 7, kMoment), Request(1, 4, 7, kMoment), Request(2, 4, -7, kMoment)}) {
    EXPECT_EQ(tesovia.BaixarLancamentoTS(request)->Realizado(), "?");
  }
  EXPECT_EQ(recorder->ran.size(), 3u);
  EXPECT_TRUE(host->events.empty());
}

auto StateOf(const CLancamento& entry) {
  return std::tuple(entry.DataId(), entry.Data(), entry.Valor(), entry.ValorPago(), entry.Realizado(),
                    entry.IdConcorrencia(), entry.SaldoConta(), entry.SaldoRecDesp(), entry.SaldoCentroCusto(),
                    entry.SaldoParceiroComl(), entry.SaldoGlobal());
}

TEST_F(SettlementTest, AFailedCommitLeavesTheEntryAsItWas) {
  Post({Day(2008, 7, 5), Cents(-10000), "1.1", "00", "1.1", 1});
  tesovia.FazerTransferenciaTS(Transfer());
  const std::string contents = ContentsOf(company);
  recorder->before = [](std::string_view text) {
    if (text == "CommitTrans") throw Erro(3043, "disco");
  };
  Watch();
  const Date later = Day(2008, 7, 9);
  for (CBaixa request : {Request(1, 1, -10000, later), Request(1, 2, -1, later), Request(1, 3, -10000, kMoment),
                         Request(2, 1, -10000, kMoment), Request(3, 3, 10000, kMoment)}) {
    ExpectErro(ErrorOf([&] { tesovia.BaixarLancamentoTS(request); }), 3043, "disco", "em CDaoTrans_ComTrans");
    const CLancamento& entry = *internal::LancamentoDe(request);
    EXPECT_EQ(StateOf(entry), StateOf(*internal::CarregarLancamentoTS(entry.Id())));
  }
  EXPECT_EQ(ContentsOf(company), contents);
}

TEST_F(SettlementTest, RefusalsChangeNothing) {
  const auto settle = [](std::int32_t id, std::int32_t kind, std::int64_t cents, const Variant& date) -> Action {
    return [=](Tesovia& ledger) {
      CBaixa request = Request(id, kind, cents, date);
      ledger.BaixarLancamentoTS(request);
    };
  };
  const Variant none;
  const Action total = settle(1, 1, 10000, Day(2008, 7, 9));
  const Action partial = settle(1, 2, 500, Day(2008, 7, 9));
  const Action unrealised = settle(1, 3, 10000, Day(2008, 7, 5));
  const Action leg = settle(3, 1, -10000, kMoment);
  const std::string newVersion = "UPDATE Lancamentos SET IdConcorrencia = 1";
  const std::string reversed = "UPDATE Lancamentos SET Estornado = True";
  const std::string ofOther = " WHERE Id = 4";
  const Meanwhile noEntry = Within("INSERT INTO HISTORICOS", "DELETE * FROM Lancamentos WHERE Id = 1");
  const char* origin = "em Tesovia.BaixarLancamentoTS";
  const char* ofTotal = "em Tesovia.BaixarTotal";
  const char* ofPartial = "em Tesovia.BaixarParcial";
  const char* ofUnrealised = "em Tesovia.BaixarNaoRealizado";
  const char* ofLeg = "em Tesovia_BaixaDeTransferencia";
  const char* noJournal = "Erro na gravação de histórico da baixa.\nO lançamento não foi baixado.";
  const Refusals refusals([](Tesovia& ledger) {
    test::Post(ledger, {Day(2008, 7, 5), Cents(10000), "1.1", "00", "1.1", 1});
    test::Post(ledger, {Day(2008, 7, 2), Cents(300), "1.1", "00"});
    ledger.FazerTransferenciaTS(Transfer());
  });
  refusals.Expect(TS_ERRO_BAIXA, origin, kSettlementOfOther,
                  {settle(0, 1, 0, none), settle(99, 1, 0, none), {total, newVersion}});
  refusals.Expect(TS_ERRO_BAIXA, origin, "Lançamentos estornados ou que sejam estorno de outro não podem ser baixados.",
                  {{total, reversed}});
  refusals.Expect(TS_ERRO_BAIXA, origin, kPartialLeg, {settle(3, 2, -500, kMoment)});
  refusals.Expect(TS_ERRO_JA_BAIXADO, origin, "O lançamento já está baixado.",
                  {{settle(1, 3, 0, none), "UPDATE Lancamentos SET Realizado = 'S'"},
                   {total, "UPDATE Lancamentos SET Realizado = ''"}});
  refusals.Expect(11, origin, TextOf(RuntimeError::DivisionByZero), {settle(1, 1, 0, none)});
  refusals.Expect(TS_ERRO_BAIXA, ofUnrealised, kNotSettled,
                  {{unrealised, "UPDATE Contas SET Inativa = True"}, {unrealised, Others(newVersion)}});
  refusals.Expect(TS_ERRO_BAIXA, ofUnrealised, noJournal, {{unrealised, noEntry}});
  refusals.Expect(TS_ERRO_BAIXA, ofTotal, kNotSettled, {{total, Others(newVersion)}});
  refusals.Expect(TS_ERRO_BAIXA, ofTotal, noJournal, {{total, noEntry}});
  refusals.Expect(TS_ERRO_BAIXA, ofPartial, kNotSettled,
                  {{partial, Others("UPDATE ParceirosComerciais SET Inativo = True")}});
  refusals.Expect(TS_ERRO_BAIXA, ofPartial,
                  "Erro na gravação de histórico da atualização.\nO lançamento não foi atualizado.",
                  {{partial, noEntry}});
  refusals.Expect(TS_ERRO_BAIXA, ofLeg, kNoOtherLeg, {{leg, "DELETE * FROM Transferencias"}});
  refusals.Expect(TS_ERRO_BAIXA, ofLeg, kLegNotSettled,
                  {{leg, "UPDATE Contas SET Inativa = True WHERE Codigo = 'B'"},
                   {leg, Others(newVersion + ofOther)},
                   {leg, Others(newVersion)}});
  refusals.Expect(TS_ERRO_BAIXA, ofLeg, noJournal,
                  {{leg, Within("INSERT INTO HISTORICOS", "DELETE * FROM Lancamentos WHERE Id = 4", 2)}});
  refusals.Expect(TS_ERRO_LOGIN, "em Module1.VerificarApos", "",
                  {{total, OthersDelete(2)}, {partial, OthersDelete(2)}});
  refusals.Expect(3043, ofUnrealised, "disco", {{unrealised, DiskFails("UPDATE Lancamentos")}});
  refusals.Expect(3043, ofTotal, "disco", {{total, DiskFails("UPDATE (")}});
  refusals.Expect(3043, ofPartial, "disco", {{partial, DiskFails("UPDATE Lancamentos Set")}});
  refusals.Expect(3043, ofLeg, "disco", {{leg, DiskFails("INSERT INTO HISTORICOS", 2)}});
}

}  // namespace
