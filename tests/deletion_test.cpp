#include <gtest/gtest.h>

#include "support/Refusals.h"
#include "support/Statements.h"

using namespace tsv;
using namespace tsv::test;

namespace {

constexpr const char* kOrigin = " Em Tesovia.ExcluirLancamentoTS";

using DeletionTest = LedgerTest;

TEST_F(DeletionTest, OfAPlainEntry) {
  Post({Date::FromCivil({2008, 7, 5, 14, 30, 15}), Cents(-1250), "1.1", "0"});
  host->events.clear();
  Watch();
  tesovia.ExcluirLancamentoTS(1, 0);
  ExpectStatements(*recorder, "deletion of a plain entry");
  EXPECT_EQ(host->events, (std::vector<std::string>{"busy", "discard", "normal"}));
}

TEST_F(DeletionTest, WithCostCentreAndPartner) {
  Post({Day(2008, 7, 1), Cents(700), "1", "0", "1", 1});
  Post({Day(2008, 7, 5), Cents(10000), "1.1", "00", "1.10", 1});
  Watch();
  tesovia.ExcluirLancamentoTS(2, 0);
  ExpectStatements(*recorder, "deletion with cost centre and partner");
}

TEST_F(DeletionTest, WhatWasNotRealisedIsInNoBalance) {
  Post({Day(2008, 7, 1), Cents(700), "1", "0", "1", 1});
  const auto entry = Post({Day(2008, 7, 5), Cents(10000), "1.1", "00", "1.10", 1});
  CBaixa request;
  request.TipoBaixa(BAIXA_NAO_REALIZADO);
  request.IdLancamento(2);
  request.DataRealizacao(entry->Data());
  request.ValorBaixado(entry->Valor());
  tesovia.BaixarLancamentoTS(request);
  Watch();
  tesovia.ExcluirLancamentoTS(2, 1);
  ExpectStatements(*recorder, "deletion of what was not realised");
}

TEST_F(DeletionTest, RefusalsChangeNothing) {
  const Action remove = [](Tesovia& ledger) { ledger.ExcluirLancamentoTS(1, 0); };
  const Action removeUnknown = [](Tesovia& ledger) { ledger.ExcluirLancamentoTS(9, 0); };
  ExpectRefusals(
      [](Tesovia& ledger) {
        test::Post(ledger, {Day(2008, 7, 5), Cents(100), "1.1", "0"});
      },
      {{TS_ERRO_EXCLUSAO,
        kOrigin,
        {{"O lançamento não foi localizado ou outro usuário o alterou enquanto você o acessava. A exclusão não se "
          "realizou.",
          {removeUnknown, {remove, "UPDATE Lancamentos SET IdConcorrencia = 1"}}},
         {"Lançamento estornado somente é excluído na exclusão de conta, receita/despesa, centro de custo/lucro ou "
          "cliente/fornecedor informado nele.",
          {{remove, "UPDATE Lancamentos SET Estornado = True, Estorno = True, Transferencia = 1"}}},
         {"Lançamento que seja estorno de outro somente é excluído na exclusão de conta, receita/despesa, centro de "
          "custo/lucro ou cliente/fornecedor informado nele.",
          {{remove, "UPDATE Lancamentos SET Estorno = True, Transferencia = 1"}}},
         {"Erro na gravação de histórico da exclusão.\nO lançamento não foi excluído.",
          {{remove, Others("DELETE * FROM Lancamentos")}}},
         {"Não foi possível excluir o lançamento selecionado. Uma possível causa é que ele já tenha sido modificado ou "
          "excluído por outro usuário enquanto você o visualizava. Verifique.",
          {{remove, "UPDATE Lancamentos SET Realizado = ''"},
           {remove, Others("UPDATE Lancamentos SET IdConcorrencia = 1")},
           {remove, Others("UPDATE Lancamentos SET Realizado = 'S'")},
           {remove, Others("UPDATE Lancamentos SET Estornado = True")},
           {remove, Others("UPDATE Lancamentos SET Estorno = True")}}}}},
       {3043, kOrigin, {{"disco", {{remove, DiskFails("UPDATE Lancamentos")}, {remove, DiskFails("CommitTrans")}}}}}});
}

TEST_F(DeletionTest, RefusedBeforeItIsBusy) {
  Post({Day(2008, 7, 5), Cents(100), "1.1", "0"});
  company.Execute("UPDATE Lancamentos SET Estornado = True");
  host->events.clear();
  Watch();
  EXPECT_EQ(ErrorOf([&] { tesovia.ExcluirLancamentoTS(1, 0); }).Numero(), TS_ERRO_EXCLUSAO);
  EXPECT_TRUE(host->events.empty());
  EXPECT_EQ(recorder->ran.size(), 1u);
}

}  // namespace
