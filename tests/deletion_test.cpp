#include <gtest/gtest.h>

#include "support/Refusals.h"

using namespace tsv;
using namespace tsv::test;

namespace {

constexpr const char* kOrigin = " Em Tesovia.ExcluirLancamentoTS";

using DeletionTest = LedgerTest;

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
           {remove, Others("UPDATE Lancamentos SET IdConcorrencia = 1")}}}}},
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
