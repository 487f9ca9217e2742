// The Jet SQL front end by itself: what it refuses and with which number, and which texts share one template.
#include "db/jet/Compiler.h"

#include <gtest/gtest.h>

#include <random>

#include "db/jet/DateLiteral.h"
#include "db/sqlite/SqliteDialect.h"
#include "support/Errors.h"
#include "support/Listed.h"

namespace tsv::db::jet {
namespace {

Catalog SmallCatalog() {
  Catalog catalog;
  catalog.Add({"Lancamentos",
               {{.name = "Id", .type = ValueType::Long},
                {.name = "Codigo"},
                {.name = "Valor", .type = ValueType::Currency},
                {.name = "DataId", .exact = true},
                {.name = "Inativo", .type = ValueType::Boolean}},
               {},
               {},
               {}});
  catalog.Add({"Contas", {{.name = "Id", .type = ValueType::Long}, {.name = "Nome"}}, {}, {}, {}});
  return catalog;
}

Compiled CompileText(std::string_view sql) {
  static const Catalog catalog = SmallCatalog();
  Lexed lexed;
  Lex(sql, lexed);
  return Compile(lexed, catalog, sqlite::SqliteDialect());
}

Erro RefusalOf(std::string_view sql) {
  return test::ErrorOf([&] { CompileText(sql); });
}

std::string ShapeOf(std::string_view sql) {
  Lexed lexed;
  Lex(sql, lexed);
  return lexed.shape;
}

TEST(Lexer, TextsThatDifferInValuesShareAShape) {
  const std::string shape = ShapeOf("UPDATE T SET V = V + 10.00 WHERE K > '2008'");
  EXPECT_EQ(ShapeOf("UPDATE T SET V = V + -1234.5678 WHERE K > '''x'"), shape);
  EXPECT_NE(ShapeOf("UPDATE T SET V = V - 10.00 WHERE K > '2008'"), shape);
  EXPECT_NE(ShapeOf("UPDATE T SET V = V + 10 WHERE K > '2008'"), shape);
}

TEST(Lexer, ASignBelongsToANumberOnlyWhereItCannotBeBinary) {
  Lexed lexed;
  Lex("a -1, -2, --3, -2 ^ 2, (4)-5, [x]-6", lexed);
  const std::vector<Variant> expected{1, -2, -3, 2, 2, 4, 5, 6};
  EXPECT_EQ(lexed.literals, expected);
}

TEST(Lexer, NumbersKeepTheirExactValueAsFarAsCurrencyGoes) {
  Lexed lexed;
  Lex("2147483647, 2147483648, 0.35, 922337203685477.5807, -922337203685477.5808, 922337203685477.5808, 0.00001, 1E2",
      lexed);
  const auto units = [](std::int64_t u) { return Variant(Currency::FromTenThousandths(u)); };
  const std::vector<Variant> expected{2147483647,       units(21474836480000), units(3500), units(INT64_MAX),
                                      units(INT64_MIN), 922337203685477.5808,  0.00001,     100.0};
  EXPECT_EQ(lexed.literals, expected);
}

// What the lexer finds in a text, or the number of its error.
struct Found {
  std::string shape;
  std::vector<Variant> literals;
  std::int32_t error = 0;
};

template <typename Read>
Found FoundBy(Read read) {
  Lexed lexed;
  const std::int32_t error = test::ErrorOf([&] { read(lexed); }).Numero();
  return error == 0 ? Found{lexed.shape, lexed.literals} : Found{{}, {}, error};
}

TEST(Lexer, AKnownShapeIsRecognisedExactlyWhereLexingFindsIt) {
  const std::vector<std::string> pieces{
      "a",        "AND", "LIKE", "x9", "[b c]", "[b'", "(",          ")",  "<",        "=",      "-",   "^",
      ".",        "*",   "Eqv",  "e5", ";",     "5",   "7",          ".5", "1.5",      "-3",     "- 4", "2e3",
      "99999999", "''",  "'x'",  "'",  "\"q\"", "#",   "#1/2/2004#", "5.", "[\x01L0]", "\x01L0", ""};
  std::mt19937 random(4);
  const auto any = [&](std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(random); };
  int recognised = 0;
  for (int round = 0; round < 30'000; ++round) {
    // Two texts that differ in a piece or two.
    std::string known;
    std::string text;
    for (std::size_t count = any(6); count-- > 0;) {
      const std::string blank(any(2), ' ');
      const std::string& piece = pieces[any(pieces.size())];
      known += blank + piece;
      text += blank + (any(3) == 0 ? pieces[any(pieces.size())] : piece);
    }
    const Found first = FoundBy([&](Lexed& lexed) { Lex(known, lexed); });
    if (first.error != 0) continue;
    const Found second = FoundBy([&](Lexed& lexed) { Lex(text, lexed); });
    const Found again = FoundBy([&](Lexed& lexed) {
      if (HasShape(text, first.shape, lexed.literals)) lexed.shape = first.shape;
    });
    SCOPED_TRACE("<" + known + "> and <" + text + ">");
    if (again.error != 0) {
      ASSERT_EQ(again.error, second.error);
    } else if (second.error == 0 && second.shape == first.shape) {
      ASSERT_EQ(again.shape, first.shape);
      ASSERT_EQ(again.literals, second.literals);
      ASSERT_EQ(HeadOf(text), HeadOf(known));
      ASSERT_EQ(HeadOf(text), HeadOf(first.shape));
      ++recognised;
    } else {
      ASSERT_TRUE(again.shape.empty());
    }
  }
  EXPECT_GT(recognised, 3'000);
}

TEST(DateLiteral, ReadsMonthFirstAndSwapsWhatCannotBe) {
  EXPECT_EQ(ReadDateLiteral("03/07/2004 14:05:09"), Date::FromCivil({2004, 3, 7, 14, 5, 9}));
  EXPECT_EQ(ReadDateLiteral("13/02/2004"), Date::FromCivil(2004, 2, 13));
  EXPECT_EQ(ReadDateLiteral("2004-02-13"), Date::FromCivil(2004, 2, 13));
  EXPECT_EQ(ReadDateLiteral("9:30 PM"), Date::FromCivil({1899, 12, 30, 21, 30, 0}));
  EXPECT_FALSE(ReadDateLiteral("02/30/2004"));
  EXPECT_FALSE(ReadDateLiteral("02/03/2004 25:00"));
}

TEST(Compiler, RefusesWithTheEnginesNumbers) {
  for (const auto& line : test::Listed("engine.txt", "statements that do not compile")) {
    EXPECT_EQ(RefusalOf(line.at(2)).Numero(), std::stoi(line[0])) << line[2];
  }
}

TEST(Compiler, NoTextExhaustsTheStack) {
  EXPECT_EQ(RefusalOf("SELECT " + std::string(100000, '(') + "1").Numero(), 3075);
  for (const std::string link : {" + 1", " AND 1", " & 1", " ^ 1", " IS NULL", " = 1"}) {
    std::string chain = "SELECT 1";
    for (int i = 0; i < 30000; ++i) chain += link;
    EXPECT_EQ(RefusalOf(chain).Numero(), 3075) << link;
  }
}

TEST(Compiler, MessagesTellTheConstructAndNeverTheStatement) {
  const Erro broken = RefusalOf("SELECT Id FROM Lancamentos WHERE Codigo = 'ana' AND Codigo = 'se'gredo'");
  EXPECT_NE(broken.Numero(), 0);
  EXPECT_EQ(broken.Descricao().find("gredo"), std::string::npos) << broken;
  const Erro pivot = RefusalOf("TRANSFORM Sum(Valor) SELECT Id FROM Lancamentos GROUP BY Id PIVOT Codigo");
  EXPECT_NE(pivot.Descricao().find("PIVOT"), std::string::npos) << pivot;
}

TEST(Compiler, UnknownNamesAreParameters) {
  const Compiled compiled =
      CompileText("SELECT Id FROM Lancamentos WHERE Id > [de onde] AND Id < ate AND Id <> [DE ONDE]");
  EXPECT_EQ(compiled.names, (std::vector<std::string>{"de onde", "ate"}));
  EXPECT_EQ(compiled.parameters.size(), 3U);
}

TEST(Compiler, OnlyLiteralsThatShapeTheSqlSplitATemplate) {
  EXPECT_TRUE(CompileText("SELECT Id FROM Lancamentos WHERE Valor > 10.5 AND Codigo LIKE 'a*'").fixed.empty());
  EXPECT_EQ(CompileText("SELECT TOP 3 Id FROM Lancamentos ORDER BY 1").fixed.size(), 2U);
}

}  // namespace
}  // namespace tsv::db::jet
