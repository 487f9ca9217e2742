#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "types/Conversions.h"
#include "types/Currency.h"
#include "types/Date.h"
#include "types/Erro.h"
#include "types/Text.h"

namespace tsv {
namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

Currency Units(std::int64_t tenThousandths) { return Currency::FromTenThousandths(tenThousandths); }

// The number of the error that the action raises, 0 for none.
template <typename Action>
std::int32_t NumberOf(Action action) {
  try {
    (void)action();
  } catch (const Erro& erro) {
    EXPECT_STRNE(erro.what(), "");
    return erro.Numero();
  }
  return 0;
}

TEST(Currency, ArithmeticIsExactUpToItsLimits) {
  EXPECT_EQ(Units(kMost - 1) + Units(1), Units(kMost));
  EXPECT_EQ(Units(kLeast + 1) - Units(1), Units(kLeast));
  EXPECT_EQ(Units(-25) * 4, Units(-100));
  EXPECT_EQ(-Units(7), Units(-7));
  EXPECT_EQ(Units(kLeast + 1).Abs(), Units(kMost));
  EXPECT_EQ(NumberOf([] { return Units(kMost) + Units(1); }), 6);
  EXPECT_EQ(NumberOf([] { return Units(kLeast) - Units(1); }), 6);
  EXPECT_EQ(NumberOf([] { return -Units(kLeast); }), 6);
  EXPECT_EQ(NumberOf([] { return Units(kLeast).Abs(); }), 6);
  EXPECT_EQ(NumberOf([] { return Units(kMost / 2 + 1) * 2; }), 6);
  EXPECT_EQ(NumberOf([] { return Currency::FromInteger(922'337'203'685'478); }), 6);
}

TEST(Currency, AnOverflowLeavesTheAmountAsItWas) {
  Currency amount = Units(kMost);
  EXPECT_EQ(NumberOf([&] { return amount += Units(1); }), 6);
  EXPECT_EQ(amount, Units(kMost));
}

TEST(Currency, FixedPatternRoundsHalvesAwayFromZero) {
  EXPECT_EQ(Units(-12'345'000).ToFixed2(), "-1234.50");
  EXPECT_EQ(Units(0).ToFixed2(), "0.00");
  EXPECT_EQ(Units(50).ToFixed2(), "0.01");
  EXPECT_EQ(Units(49).ToFixed2(), "0.00");
  EXPECT_EQ(Units(-50).ToFixed2(), "-0.01");
  EXPECT_EQ(Units(-49).ToFixed2(), "0.00");
  EXPECT_EQ(Units(9'950).ToFixed2(), "1.00");
  EXPECT_EQ(Units(kLeast).ToFixed2(), "-922337203685477.58");
}

TEST(Currency, TextHoldsAllDecimals) {
  EXPECT_EQ(Units(125'000).ToText(), "12.5");
  EXPECT_EQ(Units(-1).ToText(), "-0.0001");
  EXPECT_EQ(Units(30'000).ToText(), "3");
  EXPECT_EQ(Units(30'010).ToText(), "3.001");
  EXPECT_EQ(Units(kMost).ToText(), "922337203685477.5807");
  EXPECT_EQ(Units(kLeast).ToText(), "-922337203685477.5808");
}

TEST(Currency, ReadsTextWithoutLoss) {
  EXPECT_EQ(Currency::FromText("1.234,56"), Units(12'345'600));
  EXPECT_EQ(Currency::FromText("1234.5"), Units(12'345'000));
  EXPECT_EQ(Currency::FromText("-0,0001"), Units(-1));
  EXPECT_EQ(Currency::FromText("922.337.203.685.477,5807"), Units(kMost));
  EXPECT_EQ(Currency::FromText("-922337203685477,5808"), Units(kLeast));
  EXPECT_EQ(Currency::FromText("0,00005"), Units(0));
  EXPECT_EQ(Currency::FromText("0,00015"), Units(2));
  EXPECT_EQ(Currency::FromText("-0,000250001"), Units(-3));
  EXPECT_EQ(Currency::FromText("abc"), std::nullopt);
  EXPECT_EQ(NumberOf([] { return Currency::FromText("922337203685477,5808"); }), 6);
  EXPECT_EQ(NumberOf([] { return Currency::FromText("922337203685477,58075"); }), 6);
  EXPECT_EQ(NumberOf([] { return Currency::FromText("99999999999999999999999999"); }), 6);
}

TEST(Currency, ReadsDoublesAsTheyAreWritten) {
  EXPECT_EQ(Currency::FromDouble(0.1 + 0.2), Units(3'000));
  EXPECT_EQ(Currency::FromDouble(1.00015), Units(10'002));
  EXPECT_EQ(Currency::FromDouble(-1.00025), Units(-10'002));
  EXPECT_EQ(Currency::FromDouble(0.00005), Units(0));
  EXPECT_EQ(Currency::FromDouble(0.000051), Units(1));
  EXPECT_EQ(Currency::FromDouble(123456789012.34), Units(1'234'567'890'123'400));
  EXPECT_EQ(NumberOf([] { return Currency::FromDouble(1e15); }), 6);
  EXPECT_EQ(NumberOf([] { return Currency::FromDouble(std::numeric_limits<double>::quiet_NaN()); }), 6);
}

TEST(Date, EveryDayOfTheCalendarComesBack) {
  Date day = Date::FromCivil(100, 1, 1);
  EXPECT_EQ(day.Days(), -657'434);
  CivilTime expected{100, 1, 1, 0, 0, 0};
  for (;;) {
    ASSERT_TRUE(day.ToCivil() == expected && Date::FromCivil(expected) == day) << day.Days();
    if (expected == CivilTime{9999, 12, 31, 0, 0, 0}) break;
    day = Date(day.Days() + 1);
    if (++expected.day > DaysInMonth(expected.year, expected.month)) {
      expected.day = 1;
      expected.year += expected.month / 12;
      expected.month = expected.month % 12 + 1;
    }
  }
  EXPECT_EQ(day.Days(), 2'958'465);
  EXPECT_TRUE(IsCalendarDay(2000, 2, 29));
  EXPECT_FALSE(IsCalendarDay(1900, 2, 29));
}

TEST(Date, TimesRunForwardOnBothSidesOfTheEpoch) {
  EXPECT_EQ(Date(-1.25).ToIso(), "1899-12-29 06:00:00");
  EXPECT_EQ(Date::FromCivil({1899, 12, 29, 6, 0, 0}).Days(), -1.25);
  EXPECT_EQ(Date(-0.25).ToIso(), "1899-12-30 06:00:00");
  EXPECT_EQ(Date(0.999999).ToIso(), "1899-12-31 00:00:00");
  EXPECT_EQ(Date(-1.999999).ToIso(), "1899-12-30 00:00:00");
  EXPECT_EQ(Date(-1.75).DayNumber(), -1);
  EXPECT_EQ(Date(2.75).DayNumber(), 2);
  for (int second = 0; second < 86'400; ++second) {
    const CivilTime civil{1850, 7, 14, second / 3600, second / 60 % 60, second % 60};
    ASSERT_TRUE(Date::FromCivil(civil).ToCivil() == civil) << second;
  }
}

TEST(Date, OutsideTheCalendarRaises) {
  EXPECT_EQ(NumberOf([] { return Date::FromCivil(2007, 2, 29); }), 5);
  EXPECT_EQ(NumberOf([] { return Date::FromCivil(99, 12, 31); }), 5);
  EXPECT_EQ(NumberOf([] { return Date::FromCivil({2007, 2, 28, 24, 0, 0}); }), 5);
  EXPECT_EQ(NumberOf([] { return Date(2'958'466).ToCivil(); }), 5);
  EXPECT_EQ(NumberOf([] { return Date(2'958'465.999999).ToCivil(); }), 5);
  EXPECT_EQ(NumberOf([] { return Date(-657'435).ToCivil(); }), 5);
  EXPECT_EQ(NumberOf([] { return Date(std::numeric_limits<double>::quiet_NaN()).DayNumber(); }), 5);
}

TEST(Date, ReadsBrazilianAndIsoForms) {
  const std::vector<std::pair<std::string, std::string>> accepted{
      {"05/07/2008", "2008-07-05 00:00:00"},       {"5/7/2008", "2008-07-05 00:00:00"},
      {"31/12/29", "2029-12-31 00:00:00"},         {"01/01/30", "1930-01-01 00:00:00"},
      {"29/02/2008 23:59", "2008-02-29 23:59:00"}, {" 29/02/2008  9:08:07 ", "2008-02-29 09:08:07"},
      {"2008-07-05", "2008-07-05 00:00:00"},       {"2008-07-05 09:08:07", "2008-07-05 09:08:07"},
      {"2008-07-05T09:08", "2008-07-05 09:08:00"}, {"8:30", "1899-12-30 08:30:00"},
  };
  for (const auto& [text, iso] : accepted) {
    const auto date = Date::FromText(text);
    ASSERT_TRUE(date) << text;
    EXPECT_EQ(date->ToIso(), iso) << text;
  }
  for (const std::string text : {"",
                                 "abc",
                                 "12",
                                 "29/02/2007",
                                 "31/04/2008",
                                 "13/13/2008",
                                 "1/2",
                                 "1/2/200",
                                 "1/2/20080",
                                 "2008-7-05",
                                 "2008/07/05",
                                 "05/07/2008T08:00",
                                 "05/07/2008 25:00",
                                 "05/07/2008 08",
                                 "05/07/2008 08:0",
                                 "05/07/2008 08:00:",
                                 "05/07/200808:00",
                                 "24:00",
                                 "05/07/2008 x",
                                 "-1/2/2008",
                                 "0099-01-01"}) {
    EXPECT_FALSE(Date::FromText(text)) << text;
  }
  EXPECT_EQ(Date::FromCivil({2008, 7, 5, 9, 8, 7}).ToBrazilian(), "05/07/2008 09:08:07");
  EXPECT_EQ(Date::FromCivil(100, 7, 5).ToBrazilian(), "05/07/0100");
}

TEST(Conversions, NumbersAreReadInBothForms) {
  const std::vector<std::pair<std::string, double>> accepted{
      {"1.234,5", 1234.5},    {"1234,5", 1234.5}, {"1234.5", 1234.5}, {"0.25", 0.25}, {"1.5", 1.5},
      {"1.234", 1234},        {"0.250", 0.25},    {" -17 ", -17},     {"+3", 3},      {"1.234.567", 1234567},
      {"1234.567", 1234.567}, {",5", 0.5},        {"5,", 5},          {"000", 0},     {"0,00", 0},
  };
  for (const auto& [text, value] : accepted) EXPECT_EQ(ToDouble(text), value) << text;
  for (const std::string text : {"", " ", "abc", "-", ",", ".", "1,2,3", "1.23.4", "12.34,5", "1.2345,6", "1 2",
                                 "1234.567,8", "--1", "- 1", "1e5", "\t1", "R$ 5", ".123.456"}) {
    EXPECT_FALSE(IsNumeric(text)) << text;
    EXPECT_EQ(NumberOf([&] { return ToDouble(text); }), 13) << text;
  }
}

TEST(Conversions, NumericAndDateTestsKeepApart) {
  EXPECT_TRUE(IsNumeric(true));
  EXPECT_TRUE(IsNumeric(Empty{}));
  EXPECT_FALSE(IsNumeric(Null{}));
  EXPECT_FALSE(IsNumeric(Date(1)));
  EXPECT_FALSE(IsNumeric("01/02/2008"));
  EXPECT_TRUE(IsDate(Date(1)));
  EXPECT_TRUE(IsDate("01/02/2008"));
  EXPECT_FALSE(IsDate(1.0));
  EXPECT_FALSE(IsDate(Empty{}));
}

TEST(Conversions, HalvesRoundToEven) {
  EXPECT_EQ(ToLong(2.5), 2);
  EXPECT_EQ(ToLong(-3.5), -4);
  EXPECT_EQ(ToLong("0,5"), 0);
  EXPECT_EQ(ToLong(Units(25'000)), 2);
  EXPECT_EQ(ToLong(Units(-35'000)), -4);
  EXPECT_EQ(ToLong(Units(25'001)), 3);
  EXPECT_EQ(ToByte(254.5), 254);
  EXPECT_EQ(ToCurrency(0.00025), Units(2));
}

TEST(Conversions, RangesAndNulls) {
  EXPECT_EQ(ToLong(2147483647.4), 2147483647);
  EXPECT_EQ(NumberOf([] { return ToLong(2147483647.5); }), 6);
  EXPECT_EQ(NumberOf([] { return ToLong(Units(kMost)); }), 6);
  EXPECT_EQ(NumberOf([] { return ToByte(256); }), 6);
  EXPECT_EQ(NumberOf([] { return ToByte(-1); }), 6);
  EXPECT_EQ(NumberOf([] { return ToDate(2'958'466); }), 6);
  EXPECT_EQ(NumberOf([] { return ToDate("nunca"); }), 13);
  EXPECT_EQ(NumberOf([] { return ToText(Null{}); }), 94);
  EXPECT_EQ(NumberOf([] { return ToCurrency(Null{}); }), 94);
  EXPECT_EQ(NumberOf([] { return ToBoolean("sim"); }), 13);
  EXPECT_TRUE(ToBoolean(" TRUE"));
  EXPECT_FALSE(ToBoolean("0,00"));
  EXPECT_TRUE(ToBoolean(Units(1)));
  EXPECT_EQ(ToCurrency(Empty{}), Units(0));
  EXPECT_EQ(ToDate("05/07/2008"), Date::FromCivil(2008, 7, 5));
}

TEST(Conversions, DoublesAreWrittenInFifteenDigits) {
  const std::vector<std::pair<double, std::string>> written{
      {0.1 + 0.2, "0,3"},
      {-12.5, "-12,5"},
      {1e14, "100000000000000"},
      {1e15, "1E+15"},
      {1.0 / 3, "0,333333333333333"},
      {0.00001, "0,00001"},
      {1.0 / 300000, "3,33333333333333E-06"},
      {0, "0"},
      {123456.789, "123456,789"},
      {-1.5e300, "-1,5E+300"},
  };
  for (const auto& [value, text] : written) EXPECT_EQ(ToText(value), text);
  EXPECT_EQ(ToText(Units(-12'345'000)), "-1234,5");
  EXPECT_EQ(ToText(true), "True");
}

TEST(Text, CountsAndCutsCharacters) {
  EXPECT_EQ(text::Length("açúcar"), 6u);
  EXPECT_EQ(text::Length("a\xE7"), 2u);
  EXPECT_EQ(text::Length("\xF0\x9F\x92\xB0"), 1u);
  EXPECT_EQ(text::Trim("  a b "), "a b");
  EXPECT_EQ(text::Trim("\t\u00A0 "), "\t\u00A0");
  EXPECT_EQ(text::Trim("   "), "");
  for (const std::string valid : {"", "Ação", "\xF4\x8F\xBF\xBF"}) EXPECT_TRUE(text::IsValidUtf8(valid));
  for (const std::string broken : {"\xE7", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82", "\x80"}) {
    EXPECT_FALSE(text::IsValidUtf8(broken));
  }
}

TEST(Text, CaseCoversTheLanguagesOfEurope) {
  EXPECT_EQ(text::Upper("ação à müßig ÿ 1"), "AÇÃO À MÜßIG Ÿ 1");
  EXPECT_EQ(text::Lower("AÇÃO ÷×Ÿ"), "ação ÷×ÿ");
  EXPECT_EQ(text::Upper("łódź český őű"), "ŁÓDŹ ČESKÝ ŐŰ");
  EXPECT_EQ(text::Upper("ναός ώρα"), "ΝΑΌΣ ΏΡΑ");
  EXPECT_EQ(text::Lower("ЁЖИК ЇЖАК"), "ёжик їжак");
  EXPECT_EQ(text::Upper("a\xE7z"), "A\xE7Z");
}

TEST(Text, FoldedTextsAreEqualWithoutCaseAndTrailingBlanks) {
  EXPECT_EQ(text::CompareFolded("Porca", "PORCA "), 0);
  EXPECT_EQ(text::CompareFolded("", "  "), 0);
  EXPECT_EQ(text::CompareFolded("AÇÃO", "ação"), 0);
  EXPECT_EQ(text::CompareFolded("STRASSE", "straße"), 0);
  EXPECT_EQ(text::CompareFolded("Cæsar Œuvre", "CAESAR OEUVRE"), 0);
  EXPECT_EQ(text::CompareFolded("ΣΟΦΟΣ", "σοφος"), 0);
  EXPECT_NE(text::CompareFolded("é", "e"), 0);
  EXPECT_NE(text::CompareFolded(" a", "a"), 0);
  EXPECT_LT(text::CompareFolded("1.1", "1.10"), 0);
  EXPECT_LT(text::CompareFolded("strasa", "straße"), 0);
  EXPECT_GT(text::CompareFolded("straße", "STRASS"), 0);
}

TEST(Text, PrefixesUseTheSameFolding) {
  EXPECT_TRUE(text::BeginsWithFolded("1.1.02", "1.1"));
  EXPECT_TRUE(text::BeginsWithFolded("Ação total", "AÇÃO"));
  EXPECT_TRUE(text::BeginsWithFolded("Straße", "stras"));
  EXPECT_TRUE(text::BeginsWithFolded("x", ""));
  EXPECT_FALSE(text::BeginsWithFolded("Acao", "aç"));
  EXPECT_FALSE(text::BeginsWithFolded("1.1", "1.1 "));
  EXPECT_FALSE(text::BeginsWithFolded("1.1", "1.10"));
}

// Every pair of these: sorted by the language, and equal in one order exactly when equal in the other.
TEST(Text, LanguageOrder) {
  const std::vector<std::string> sorted{
      "",   " x",   "#2",    "1.10",  "10",  "1-1", "2",     "Agua", "Água", "águas", "Azul", "c",     "ç",
      "cb", "coop", "c-oop", "co-op", "nao", "não", "Náo x", "naoy", "ss x", "ßy",    "z",    "Ωmega", "Жук",
  };
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    for (std::size_t j = 0; j < sorted.size(); ++j) {
      const int order = text::CompareLanguage(sorted[i], sorted[j]);
      EXPECT_EQ(order < 0, i < j) << sorted[i] << " / " << sorted[j];
      EXPECT_EQ(order == 0, i == j) << sorted[i] << " / " << sorted[j];
    }
  }
  EXPECT_EQ(text::CompareLanguage("Água ", "ÁGUA"), 0);
  EXPECT_EQ(text::CompareLanguage("Straße", "STRASSE"), 0);
  EXPECT_EQ(text::CompareLanguage("20080705000000012", "20080705000000012"), 0);
}

// Sort keys and indexes need an order without contradictions, whatever bytes come in.
TEST(Text, OrdersAreConsistent) {
  const std::vector<std::string> pieces{"a", "A", "á", "ß", "s", "-", "'", " ", "\xC3", "\xA7", "æ", "e", "9"};
  std::vector<std::string> texts{""};
  for (const auto& first : pieces) {
    texts.push_back(first);
    for (const auto& second : pieces) texts.push_back(first + second);
  }
  for (auto compare : {&text::CompareFolded, &text::CompareLanguage}) {
    std::sort(texts.begin(), texts.end(), [&](const auto& a, const auto& b) { return compare(a, b) < 0; });
    for (std::size_t i = 0; i < texts.size(); ++i) {
      for (std::size_t j = i; j < texts.size(); ++j) {
        ASSERT_LE(compare(texts[i], texts[j]), 0) << texts[i] << " / " << texts[j];
        ASSERT_GE(compare(texts[j], texts[i]), 0) << texts[i] << " / " << texts[j];
        ASSERT_EQ(text::CompareLanguage(texts[i], texts[j]) == 0, text::CompareFolded(texts[i], texts[j]) == 0)
            << texts[i] << " / " << texts[j];
      }
    }
  }
}

}  // namespace
}  // namespace tsv
