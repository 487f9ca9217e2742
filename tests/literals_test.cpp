#include "common/Literals.h"

#include <gtest/gtest.h>

#include "common/Errors.h"
#include "common/Statement.h"
#include "db/EngineError.h"
#include "support/Errors.h"

using namespace tsv;
using namespace tsv::Module1;
using tsv::test::ErrorOf;
using tsv::test::ExpectErro;

namespace {

constexpr std::int32_t kSyntax = static_cast<std::int32_t>(db::EngineError::SyntaxInExpression);

TEST(Literals, NumbersTurnFromTheBrazilianForm) {
  EXPECT_EQ(NtoDB("1.234,5", "NULL", ""), "1234.5");
  EXPECT_EQ(NtoDB("  12 ", "NULL", ""), "12");
  EXPECT_EQ(NtoDB("-17", "NULL", "="), "=-17");
  for (const char* nothing : {"", "   ", "0", "0,00", "-0"}) EXPECT_EQ(NtoDB(nothing, "NULL", "="), "=NULL") << nothing;
  ExpectErro(ErrorOf([] { NtoDB("abc", "NULL", ""); }), TS_ERRO_LANCAMENTO, "Valor não numérico.", "NtoDB");
}

TEST(Literals, TextsStandBetweenApostrophesAsTheyAre) {
  EXPECT_EQ(StoDB("X", "NULL", "="), "='X'");
  EXPECT_EQ(StoDB("A'B", "NULL", ""), "'A'B'");
  EXPECT_EQ(StoDB("", "NULL", ""), "NULL");
  EXPECT_EQ(StoDB("", "null", ""), "null");
  EXPECT_EQ(StoDB(" ", "NULL", ""), "' '");
  EXPECT_EQ(StoDB("", "@@@", ""), "'@@@'");
  EXPECT_EQ(StoDB("NULL", "NULL", ""), "'NULL'");
}

TEST(Literals, DatesPutTheMonthFirst) {
  const Date date = Date::FromCivil({2004, 3, 7, 14, 5, 9});
  EXPECT_EQ(DataSQL(date, 1), "#03/07/2004 14:05:09#");
  EXPECT_EQ(DataSQL(date, 2), "#03/07/2004#");
  EXPECT_EQ(DataSQL(date, 3), "#14:05:09#");
  EXPECT_EQ(DataSQL(Date::FromCivil(812, 1, 2), 2), "#01/02/0812#");
  EXPECT_EQ(DataSQL(Date(), 7), "NULL");
  ExpectErro(ErrorOf([&] { DataSQL(date, 7); }), TS_ERRO_LANCAMENTO, "Formato de data inválido.", "DataSQL");
}

TEST(Literals, VariantsTakeTheirDefaults) {
  EXPECT_EQ(VtoS(Null()), "");
  EXPECT_EQ(VtoS(Null(), std::string("x")), "x");
  EXPECT_EQ(VtoS(Empty(), std::string("x")), "");
  EXPECT_EQ(VtoS(std::int32_t{7}), "7");

  for (const Variant& missing : {Variant(Null()), Variant(Empty()), Variant(std::string("  "))}) {
    EXPECT_FALSE(VtoB(missing));
    EXPECT_TRUE(VtoB(missing, true));
    EXPECT_TRUE(VtoB(missing, std::int32_t{-1}));
  }
  for (const Variant& yes : {Variant(-1), Variant(std::string("2,5")), Variant(std::string("tRuE"))}) {
    EXPECT_TRUE(VtoB(yes));
  }
  for (const Variant& no : {Variant(0), Variant(std::string("False")), Variant(std::string("sim")), Variant(Date(1))}) {
    EXPECT_FALSE(VtoB(no, true));
  }

  EXPECT_EQ(VtoN(Null()), Variant(0.0));
  EXPECT_EQ(VtoN(std::string(" "), std::int32_t{5}), Variant(std::int32_t{5}));
  for (const Variant& kept : {Variant(std::string("12,5")), Variant(std::string("07/03/2004")), Variant(Date(38000))}) {
    EXPECT_EQ(VtoN(kept), kept);
  }
  ExpectErro(ErrorOf([] { VtoN(std::string("x")); }), TS_ERRO_LANCAMENTO, "Valor não numérico.", "");
}

TEST(Statement, NoTextLeavesItsOwnLiteral) {
  EXPECT_EQ(TextLiteral("").Text(), "''");
  EXPECT_EQ(TextLiteral("a \"b\" -- ; %").Text(), "'a \"b\" -- ; %'");
  EXPECT_EQ(TextLiteral("D''ÁVILA").Text(), "'D''ÁVILA'");
  EXPECT_EQ(TextOrNull("").Text(), "NULL");
  EXPECT_FALSE(TextOrNull("NULL").IsNull());
  using namespace std::string_view_literals;
  for (const std::string_view value : {"'"sv, "D'ÁVILA"sv, "abc'"sv, "'abc"sv, "a'''b"sv, "''' OR 1=1"sv, "a\0b"sv}) {
    EXPECT_EQ(ErrorOf([&] { TextLiteral(value); }).Numero(), kSyntax) << value;
    EXPECT_EQ(ErrorOf([&] { TextOrNull(value); }).Numero(), kSyntax) << value;
  }
}

TEST(Statement, AmountsAndNumbers) {
  EXPECT_EQ(AmountLiteral(Currency::FromTenThousandths(-12'345'000)).Text(), "-1234.50");
  EXPECT_EQ(AmountLiteral(Currency::FromTenThousandths(-99)).Text(), "-0.01");
  EXPECT_EQ(AmountLiteral(Currency()).Text(), "0.00");
  EXPECT_EQ(NumberLiteral(0).Text(), "0");
  EXPECT_TRUE(NumberOrNull(0).IsNull());
  EXPECT_EQ(NumberOrNull(-1234567).Text(), "-1234567");
}

}  // namespace
