#include <gtest/gtest.h>

#include "support/Messages.h"
#include "support/Refusals.h"

using namespace tsv;
using namespace tsv::test;

namespace {

constexpr const char* kOrigin = " Em Tesovia.ExcluirLancamentoTS";

using DeletionTest = LedgerTest;

TEST_F(DeletionTest, RefusalsChangeNothing) {
  const Action remove = [](Tesovia& ledger) { ledger.ExcluirLancamentoTS(1, 0); };
  const std::string newVersion = "UPDATE Lancamentos SET IdConcorrencia = 1";
  const Action removeUnknown = [](Tesovia& ledger) { ledger.ExcluirLancamentoTS(9, 0); };
  const Refusals refusals([](Tesovia& ledger) { test::Post(ledger, {Day(2008, 7, 5), Cents(100), "1.1", "0"}); });
  refusals.Expect(TS_ERRO_EXCLUSAO, kOrigin, kDeletionOfOther, {removeUnknown, {remove, newVersion}});
  refusals.Expect(TS_ERRO_EXCLUSAO, kOrigin, kDeletionOfReversed,
                  {{remove, "UPDATE Lancamentos SET Estornado = True, Estorno = True, Transferencia = 1"}});
  refusals.Expect(TS_ERRO_EXCLUSAO, kOrigin, kDeletionOfReversal,
                  {{remove, "UPDATE Lancamentos SET Estorno = True, Transferencia = 1"}});
  refusals.Expect(TS_ERRO_EXCLUSAO, kOrigin, kNoDeletionJournal, {{remove, Others("DELETE * FROM Lancamentos")}});
  refusals.Expect(TS_ERRO_EXCLUSAO, kOrigin, kNotDeleted,
                  {{remove, "UPDATE Lancamentos SET Realizado = ''"}, {remove, Others(newVersion)}});
  refusals.Expect(3043, kOrigin, "disco",
                  {{remove, DiskFails("UPDATE Lancamentos")}, {remove, DiskFails("CommitTrans")}});
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
