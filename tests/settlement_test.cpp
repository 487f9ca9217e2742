#include <gtest/gtest.h>

#include <tuple>

#include "Loading.h"
#include "Requests.h"
#include "support/Refusals.h"
#include "support/Statements.h"

using namespace tsv;
using namespace tsv::test;

namespace {

using Strings = std::vector<std::string>;

const Date kMoment = Date::FromCivil({2008, 7, 5, 14, 30, 15});

CBaixa Request(std::int32_t id, std::int32_t kind, std::int64_t cents, const Variant& date) {
  CBaixa request;
  request.IdLancamento(id);
  request.TipoBaixa(static_cast<TIPO_BAIXA>(kind));
  request.ValorBaixado(Cents(cents));
  request.DataRealizacao(date);
  return request;
}

CTransferencia Transfer() {
  CTransferencia request;
  request.CodContaOrigem("1.1");
  request.CodContaDestino("B");
  request.Valor(Cents(10000));
  request.DataDaTransferencia(kMoment);
  request.HistoricoSaida("x");
  request.HistoricoEntrada("y");
  return request;
}

class SettlementTest : public LedgerTest {
 protected:
  void PostPlain() { Post({kMoment, Cents(-1250), "1.1", "0"}); }
  void PostClassified() {
    Post({Day(2008, 7, 1), Cents(700), "1", "0", "1", 1});
    Post({Day(2008, 7, 5), Cents(10000), "1.1", "00", "1.10", 1, "venda", "NF 1"});
  }

  void ExpectSettled(CBaixa request, const std::string& scenario) {
    host->events.clear();
    Watch();
    EXPECT_EQ(tesovia.BaixarLancamentoTS(request), internal::LancamentoDe(request));
    ExpectStatements(*recorder, scenario);
    EXPECT_EQ(host->events, (Strings{"busy", "discard", "normal"}));
  }
};

TEST_F(SettlementTest, OfAPlainEntryAsNotRealised) {
  PostPlain();
  ExpectSettled(Request(1, 3, -1250, Day(2008, 7, 5)), "plain entry not realised");
}

TEST_F(SettlementTest, OfAPlainEntryInFullOnALaterDay) {
  PostPlain();
  Post({Day(2008, 7, 7), Cents(100), "1", "0"});
  ExpectSettled(Request(1, 1, -1250, Date::FromCivil({2008, 7, 9, 10, 30, 0})), "full settlement of a plain entry");
}

TEST_F(SettlementTest, OfAPlainEntryInPartOnAnEarlierDay) {
  PostPlain();
  Post({Day(2008, 7, 4), Cents(100), "1", "0"});
  ExpectSettled(Request(1, 2, -50, Day(2008, 7, 3)), "partial settlement on an earlier day");
}

TEST_F(SettlementTest, OfBothLegsOfATransfer) {
  tesovia.FazerTransferenciaTS(Transfer());
  ExpectSettled(Request(1, 1, -10000, kMoment), "full settlement of a transfer");
}

TEST_F(SettlementTest, OfBothLegsOfATransferAsNotRealised) {
  tesovia.FazerTransferenciaTS(Transfer());
  ExpectSettled(Request(2, 3, 10000, kMoment), "transfer not realised");
}

TEST_F(SettlementTest, OfAClassifiedEntryAsNotRealised) {
  PostClassified();
  ExpectSettled(Request(2, 3, 10000, kMoment), "not realised with cost centre and partner");
}

TEST_F(SettlementTest, OfAClassifiedEntryInPartOnTheSameDay) {
  PostClassified();
  ExpectSettled(Request(2, 2, 2550, Date::FromCivil({2008, 7, 5, 10, 30, 0})),
                "partial settlement with cost centre and partner");
}

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
  const char* notSettled =
      "Não foi possível baixar o lançamento.\nPossível causa: outro usuário alterou lançamento ou a conta de capital "
      "ou de receita/despesa foi desativada.";
  const char* noJournal = "Erro na gravação de histórico da baixa.\nO lançamento não foi baixado.";
  ExpectRefusals(
      [](Tesovia& ledger) {
        test::Post(ledger, {Day(2008, 7, 5), Cents(10000), "1.1", "00", "1.1", 1});
        test::Post(ledger, {Day(2008, 7, 2), Cents(300), "1.1", "00"});
        ledger.FazerTransferenciaTS(Transfer());
      },
      {{TS_ERRO_BAIXA,
        origin,
        {{"O lançamento não foi localizado ou outro usuário o alterou enquanto você o acessava. A baixa não se "
          "realizou.",
          {settle(0, 1, 0, none), settle(99, 1, 0, none), {total, newVersion}}},
         {"Lançamentos estornados ou que sejam estorno de outro não podem ser baixados.", {{total, reversed}}},
         {"Lancamento parte de uma transferência não pode receber baixa parcial.", {settle(3, 2, -500, kMoment)}}}},
       {TS_ERRO_JA_BAIXADO,
        origin,
        {{"O lançamento já está baixado.",
          {{settle(1, 3, 0, none), "UPDATE Lancamentos SET Realizado = 'S'"},
           {total, "UPDATE Lancamentos SET Realizado = ''"}}}}},
       {11, origin, {{TextOf(RuntimeError::DivisionByZero), {settle(1, 1, 0, none)}}}},
       {TS_ERRO_BAIXA,
        ofUnrealised,
        {{notSettled,
          {{unrealised, "UPDATE Contas SET Inativa = True"},
           {unrealised, "UPDATE Contas SET Excluida = True"},
           {unrealised, "UPDATE TiposMovimentacoes SET Inativo = True"},
           {unrealised, "UPDATE TiposMovimentacoes SET Excluido = True"},
           {unrealised, "UPDATE CentrosDeCusto SET Inativo = True"},
           {unrealised, "UPDATE CentrosDeCusto SET Excluido = True"},
           {unrealised, "UPDATE ParceirosComerciais SET Inativo = True"},
           {unrealised, Others(newVersion)}}},
         {noJournal, {{unrealised, noEntry}}}}},
       {TS_ERRO_BAIXA,
        ofTotal,
        {{notSettled,
          {{total, Others("UPDATE TiposMovimentacoes SET Inativo = True")},
           {total, Others(newVersion)},
           {total, Others(reversed)},
           {total, Others("UPDATE Lancamentos SET Realizado = 'S'")}}},
         {noJournal, {{total, noEntry}}}}},
       {TS_ERRO_BAIXA,
        ofPartial,
        {{notSettled, {{partial, Others("UPDATE ParceirosComerciais SET Inativo = True")}}},
         {"Erro na gravação de histórico da atualização.\nO lançamento não foi atualizado.", {{partial, noEntry}}}}},
       {TS_ERRO_BAIXA,
        ofLeg,
        {{"Erro: faltando informação sobre o lançamento correspondente na operação de transferência.",
          {{leg, "DELETE * FROM Transferencias"}}},
         {"A baixa do lançamento não ocorreu. Um motivo pode ser o de outro usuário ter acabado de estorná-lo ou "
          "baixá-lo.\nAtualize sua pesquisa.",
          {{leg, "UPDATE Contas SET Inativa = True WHERE Codigo = 'B'"},
           {leg, "UPDATE Lancamentos SET Realizado = 'N'" + ofOther},
           {leg, reversed + ofOther},
           {leg, Others(newVersion + ofOther)},
           {leg, Others(newVersion)}}},
         {noJournal, {{leg, Within("INSERT INTO HISTORICOS", "DELETE * FROM Lancamentos WHERE Id = 4", 2)}}}}},
       {TS_ERRO_LOGIN, "em Module1.VerificarApos", {{"", {{total, OthersDelete(2)}, {partial, OthersDelete(2)}}}}},
       {3043, ofUnrealised, {{"disco", {{unrealised, DiskFails("UPDATE Lancamentos")}}}}},
       {3043, ofTotal, {{"disco", {{total, DiskFails("UPDATE (")}}}}},
       {3043, ofPartial, {{"disco", {{partial, DiskFails("UPDATE Lancamentos Set")}}}}},
       {3043, ofLeg, {{"disco", {{leg, DiskFails("INSERT INTO HISTORICOS", 2)}}}}}});
}

}  // namespace
