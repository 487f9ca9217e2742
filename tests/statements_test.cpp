#include <gtest/gtest.h>

#include "support/Refusals.h"
#include "support/Statements.h"

using namespace tsv;
using namespace tsv::test;

namespace {

struct Scenario {
  const char* name;
  std::vector<Action> given;
  Action act;
};

std::ostream& operator<<(std::ostream& out, const Scenario& scenario) { return out << scenario.name; }

Action Posting(const test::Posting& posting) {
  return [=](Tesovia& ledger) { Post(ledger, posting); };
}

Action Transferring(std::int64_t cents) {
  return [=](Tesovia& ledger) { ledger.FazerTransferenciaTS(TransferOf("1.1", "B", Cents(cents), kMoment)); };
}

Action Deleting(std::int32_t id, std::int32_t version = 0) {
  return [=](Tesovia& ledger) { ledger.ExcluirLancamentoTS(id, version); };
}

Action Settling(std::int32_t id, TIPO_BAIXA kind, std::int64_t cents, Date date) {
  return [=](Tesovia& ledger) {
    CBaixa request = SettlementOf(id, kind, Cents(cents), date);
    EXPECT_EQ(ledger.BaixarLancamentoTS(request), internal::LancamentoDe(request));
  };
}

Action Reversing(const std::string& history, std::int32_t id) {
  return [=](Tesovia& ledger) { ledger.EstornarLancamentoTS(history, id, 0); };
}

std::vector<Scenario> EveryScenario() {
  const Date day = Day(2008, 7, 5);
  const Date later = Date::FromCivil({2008, 7, 9, 10, 30, 0});
  const Date sameDay = Date::FromCivil({2008, 7, 5, 10, 30, 0});
  const test::Posting onDay = {day, Cents(-1250), "1.1", "0"};
  const Action plain = Posting({kMoment, Cents(-1250), "1.1", "0"});
  const Action other = Posting({Day(2008, 7, 1), Cents(700), "1", "0", "1", 1});
  const Action full = Posting({day, Cents(10000), "1.1", "00", "1.10", 1, "venda", "NF 1"});
  const Action third = Posting(
      {Date::FromCivil({2008, 7, 6, 14, 30, 15}), Cents(123450), " 1.1.2 ", "00", " 1.10", 1, "recebimento", " NF 1 "});
  const Action transfer = Transferring(-15000);
  return {
      {"posting of a plain entry", {}, Posting(onDay)},
      {"posting with cost centre and partner", {Posting(onDay), Posting({day, Cents(100), "1.1", "0", "1", 1})}, third},
      {"deletion of a plain entry", {plain}, Deleting(1)},
      {"deletion with cost centre and partner", {other, full}, Deleting(2)},
      {"deletion of what was not realised",
       {other, full, Settling(2, BAIXA_NAO_REALIZADO, 10000, day)},
       Deleting(2, 1)},
      {"plain entry not realised", {plain}, Settling(1, BAIXA_NAO_REALIZADO, -1250, day)},
      {"not realised with cost centre and partner", {other, full}, Settling(2, BAIXA_NAO_REALIZADO, 10000, day)},
      {"full settlement of a plain entry",
       {plain, Posting({Day(2008, 7, 7), Cents(100), "1", "0"})},
       Settling(1, BAIXA_TOTAL, -1250, later)},
      {"partial settlement on an earlier day",
       {plain, Posting({Day(2008, 7, 4), Cents(100), "1", "0"})},
       Settling(1, BAIXA_PARCIAL, -50, Day(2008, 7, 3))},
      {"partial settlement with cost centre and partner", {other, full}, Settling(2, BAIXA_PARCIAL, 2550, sameDay)},
      {"full settlement of a transfer", {Transferring(10000)}, Settling(1, BAIXA_TOTAL, -10000, kMoment)},
      {"transfer not realised", {Transferring(10000)}, Settling(2, BAIXA_NAO_REALIZADO, 10000, kMoment)},
      {"deletion of a transfer", {transfer}, Deleting(2)},
      {"deletion of a transfer not realised",
       {transfer, Settling(2, BAIXA_NAO_REALIZADO, 15000, kMoment)},
       Deleting(1, 1)},
      {"reversal of a transfer", {transfer}, Reversing("  devolução ", 2)},
      {"reversal of a plain entry", {plain}, Reversing("  devolução ", 1)},
      {"reversal with cost centre and partner", {other, full}, Reversing(" " + std::string(49, 'x') + "ç ", 2)},
  };
}

class StatementsTest : public LedgerTest, public testing::WithParamInterface<Scenario> {};

TEST_P(StatementsTest, AreThoseListed) {
  for (const Action& action : GetParam().given) action(tesovia);
  host->events.clear();
  Watch();
  GetParam().act(tesovia);
  ExpectStatements(*recorder, GetParam().name);
  EXPECT_EQ(host->events, (std::vector<std::string>{"busy", "discard", "normal"}));
}

INSTANTIATE_TEST_SUITE_P(EveryOperation, StatementsTest, testing::ValuesIn(EveryScenario()));

}  // namespace
