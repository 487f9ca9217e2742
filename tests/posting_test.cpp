#include <gtest/gtest.h>

#include "Loading.h"
#include "db/EngineError.h"
#include "support/Messages.h"
#include "support/Refusals.h"

using namespace tsv;
using namespace tsv::test;

namespace {

using Strings = std::vector<std::string>;

constexpr const char* kOrigin = "em Tesovia.FazerLancamentoTS ";
const Posting kPlain = {Day(2008, 7, 5), Cents(-1250), "1.1", "0"};

class PostingTest : public LedgerTest {
 protected:
  // The posting fails with a message box, shown when the transaction is over.
  void ExpectBox(const Posting& posting, const std::string& notWritten) {
    host->events.clear();
    host->onBox = [&] {
      EXPECT_EQ(recorder->ran.back().text, "Rollback");
      company.Execute("UPDATE Serial SET Serial = Serial");  // another user can write meanwhile
    };
    Watch();
    ExpectErro(ErrorOf([&] { Post(posting); }), TS_ERRO_LOGIN, "", kOrigin);
    const std::string box = "box 0 [] Não foi possível incluir " + notWritten +
                            ".\nPossível causa: a conta, receita/despesa, centro de custo/lucro ou cliente/fornecedor "
                            "foi desativado.";
    EXPECT_EQ(host->events, (Strings{"busy", "discard", "normal", "pointer 0", box, "pointer 2"}));
  }
};

TEST_F(PostingTest, RefusalsWriteNothing) {
  const auto post = [](const Posting& posting) -> Action {
    return [=](Tesovia& ledger) { test::Post(ledger, posting); };
  };
  const Date day = Day(2008, 7, 5);
  const Action plain = post(kPlain);
  const char* ofCheck = "em CLancamento.Validar";
  const Refusals refusals([](Tesovia& ledger) { test::Post(ledger, kPlain); });
  refusals.Expect(TS_ERRO_LANCAMENTO, kOrigin, "Receita/despesa informada para o lançamento não existe.",
                  {post({day, Cents(1), "1", "77"}), post({day, Cents(1), "1", " 0"})});
  refusals.Expect(TS_ERRO_LANCAMENTO, kOrigin, kOnlyIncoming, {post({day, Cents(-1), "1", "2"})});
  refusals.Expect(TS_ERRO_LANCAMENTO, kOrigin, kOnlyOutgoing, {post({day, Cents(1), "1", "3"})});
  refusals.Expect(TS_ERRO_LANCAMENTO, ofCheck, "Faltando informar o valor do lançamento.",
                  {post({day, Cents(0), "1", "2"})});
  refusals.Expect(TS_ERRO_LANCAMENTO, ofCheck, "Faltando informar o código da conta de capital.",
                  {post({day, Cents(1), "", "0"})});
  refusals.Expect(TS_ERRO_LANCAMENTO, "em CLancamento.Historico", "Histórico não deve ter mais do que 50 caracteres.",
                  {post({day, Cents(1), "1", "0", "", 0, std::string(51, 'x')})});
  refusals.Expect(3075, kOrigin, db::TextOf(db::EngineError::SyntaxInExpression, ""),
                  {post({day, Cents(1), "1", "0'"}), post({day, Cents(1), "1' OR '1'='1", "0"}),
                   post({day, Cents(1), "1", "0", "1'"}), post({day, Cents(1), "1", "0", "", 0, "copo d'água"}),
                   post({day, Cents(1), "1", "0", "", 0, "x", "a'''b"})});
  refusals.Expect(TS_ERRO_CARREGAR_LANCAMENTO, "em Tesovia.CarregarLancamentoTS",
                  "Erro na carga do lançamento id: -5.\nLançamento não localizado.",
                  {Action([](Tesovia&) { internal::CarregarLancamentoTS(-5); })});
  // Only two decimals are stored, so the balances of such an amount never verify.
  refusals.Expect(TS_ERRO_LOGIN, "em Module1.VerificarApos", "",
                  {post({day, Currency::FromTenThousandths(100'050), "1", "0"})});
  // The last id is never passed, and the keys have room for nine digits.
  refusals.Expect(6, kOrigin, TextOf(RuntimeError::Overflow), {{plain, "UPDATE Serial SET Serial = 2147483647"}});
  refusals.Expect(3163, kOrigin, db::TextOf(db::EngineError::TextTooLong, "Lancamentos.DataId"),
                  {{plain, "UPDATE Serial SET Serial = 999999999"}});
  refusals.Expect(3043, kOrigin, "disco", {{plain, DiskFails("UPDATE Lancamentos")}});
  refusals.Expect(3043, "em CDaoTrans_ComTrans", "disco", {{plain, DiskFails("CommitTrans")}});
}

TEST_F(PostingTest, DeactivatedMastersAreToldInABox) {
  const Date day = Day(2008, 7, 5);
  const Posting cases[] = {
      {day, Cents(1), "9", "0"},          {day, Cents(1), "8", "0"},         {day, Cents(1), "77", "0"},
      {day, Cents(1), "1", "9"},          {day, Cents(1), "1", "001"},       {day, Cents(1), "1", "0", "9"},
      {day, Cents(1), "1", "0", "1.100"}, {day, Cents(1), "1", "0", "1", 9}, {day, Cents(1), "1", "0", "", -1},
  };
  for (const Posting& posting : cases) {
    SCOPED_TRACE(posting.account + "/" + posting.type + "/" + posting.centre + "/" + std::to_string(posting.partner));
    ExpectBox(posting, "o lançamento");
  }
  recorder->before = [&](std::string_view text) {
    // What a deactivation between the two inserts would do, were it not kept out by the transaction.
    if (!text.starts_with("INSERT INTO HISTORICOS")) return;
    CurrentSession().BancoDeDados->Execute("UPDATE Contas SET Inativa = True");
  };
  ExpectBox(kPlain, "o histórico do lançamento");
  EXPECT_EQ(ExpectSound(company), 0u);
}

}  // namespace
