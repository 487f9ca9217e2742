#include <gtest/gtest.h>

#include <tuple>

#include "common/BalanceCriteria.h"
#include "db/EngineError.h"
#include "support/Statements.h"

using namespace tsv;
using namespace tsv::test;
using Module1::Classificacao;
using Module1::Efeito;
using Module1::MontaCriteriosParaAtualizarSaldos;

namespace {

using CriteriaTest = LedgerTest;

TEST_F(CriteriaTest, EachFormHasItsText) {
  const Classificacao full{"1.1", "001", "1.1", 1};
  const Classificacao other{"1.2", "02", "1.2", 2};
  const Classificacao plain{"1.1", "001", "", 0};
  const std::pair<Classificacao, Classificacao> newAndOld[] = {
      {full, full}, {full, other}, {full, plain}, {plain, full}, {plain, plain}};
  const std::tuple<const char*, Date, Date> moves[] = {{"later", Day(2008, 7, 10), Day(2008, 7, 1)},
                                                       {"earlier", Day(2008, 7, 1), Day(2008, 7, 10)},
                                                       {"same day", Day(2008, 7, 1), Day(2008, 7, 1)}};
  for (const auto& [name, newDay, oldDay] : moves) {
    const std::vector<std::string> texts = Statements(std::string("assignments, ") + name);
    ASSERT_EQ(texts.size(), std::size(newAndOld));
    for (std::size_t form = 0; form < texts.size(); ++form) {
      const Efeito n{Module1::MontarDataId(newDay, 50), newDay, newAndOld[form].first, Cents(-3050)};
      const Efeito a{Module1::MontarDataId(oldDay, 50), oldDay, newAndOld[form].second, Cents(-10000)};
      EXPECT_EQ(MontaCriteriosParaAtualizarSaldos(n, a).Text(), texts[form]);
      company.Execute("UPDATE Lancamentos Set " + texts[form]);  // the engine takes it
    }
  }
}

TEST_F(CriteriaTest, AnotherHourOfTheSameDayIsNoMove) {
  const Efeito antigo{"20080705000000001", Date::FromCivil({2008, 7, 5, 23, 59, 0}), {"1.1", "0", "", 0}, Cents(10000)};
  Efeito novo = antigo;
  novo.Data = Day(2008, 7, 5);
  novo.Valor = Cents(8000);
  EXPECT_EQ(MontaCriteriosParaAtualizarSaldos(novo, antigo).Text(),
            "SaldoConta = SaldoConta + IIF ('1.1' LIKE CodConta & '*', 80.00 - 100.00,0) "
            ", SaldoRecDesp = SaldoRecDesp + IIF ('0' LIKE CodRecDesp & '*', 80.00 - 100.00,0) "
            ", SaldoGlobal = SaldoGlobal + 80.00 - 100.00");
  for (const auto& [amount, text] : {std::pair{"1234,5", "+ 1234.50 - 100.00"}, {"-0,005", "+ -0.01 - 100.00"}}) {
    novo.Valor = *Currency::FromText(amount);
    EXPECT_TRUE(MontaCriteriosParaAtualizarSaldos(novo, antigo).Text().ends_with(text)) << text;
  }
  novo.Classe.CodConta = "1'1";
  ExpectErro(ErrorOf([&] { MontaCriteriosParaAtualizarSaldos(novo, antigo); }), 3075,
             db::TextOf(db::EngineError::SyntaxInExpression, ""), "em Tesovia.MontaCriteriosParaAtualizarSaldos");
}

}  // namespace
