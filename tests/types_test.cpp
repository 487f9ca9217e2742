#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "support/Errors.h"
#include "support/JsonValues.h"
#include "types/Currency.h"
#include "types/Date.h"
#include "types/Text.h"

namespace tsv {
namespace {

using test::Json;
using test::ValueOf;

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

Currency Units(std::int64_t tenThousandths) { return Currency::FromTenThousandths(tenThousandths); }

template <typename Action>
std::int32_t NumberOf(Action action) {
  const Erro erro = test::ErrorOf(action);
  EXPECT_STRNE(static_cast<const std::exception&>(erro).what(), "");
  return erro.Numero();
}

std::string Order(int (*compare)(std::string_view, std::string_view), const Json& pair) {
  const int order = compare(pair[0].get<std::string>(), pair[1].get<std::string>());
  return order < 0 ? "before" : order > 0 ? "after" : "equal";
}

// What data/types.json lists results of, by name.
const std::map<std::string, std::function<Variant(const Json&)>> kListed = {
    {"Amount in cents", [](const Json& json) { return ToCurrency(ValueOf(json)).ToFixed2(); }},
    {"Amount as text", [](const Json& json) { return ToCurrency(ValueOf(json)).ToText(); }},
    {"Amount from text",
     [](const Json& json) {
       const auto amount = Currency::FromText(json.get<std::string>());
       return amount ? Variant(*amount) : Variant(Null{});
     }},
    {"Amount from a double", [](const Json& json) { return Currency::FromDouble(json); }},
    {"Date from text",
     [](const Json& json) {
       const auto date = Date::FromText(json.get<std::string>());
       return date ? Variant(date->ToIso()) : Variant(Null{});
     }},
    {"Double", [](const Json& json) { return ToDouble(ValueOf(json)); }},
    {"Text", [](const Json& json) { return ToText(ValueOf(json)); }},
    {"Long", [](const Json& json) { return ToLong(ValueOf(json)); }},
    {"Byte", [](const Json& json) { return ToByte(ValueOf(json)); }},
    {"Currency", [](const Json& json) { return ToCurrency(ValueOf(json)); }},
    {"Boolean", [](const Json& json) { return ToBoolean(ValueOf(json)); }},
    {"Date", [](const Json& json) { return ToDate(ValueOf(json)); }},
    {"Is numeric", [](const Json& json) { return IsNumeric(ValueOf(json)); }},
    {"Is a date", [](const Json& json) { return IsDate(ValueOf(json)); }},
    {"Upper case", [](const Json& json) { return text::Upper(json.get<std::string>()); }},
    {"Lower case", [](const Json& json) { return text::Lower(json.get<std::string>()); }},
    {"Folded order", [](const Json& pair) { return Order(text::CompareFolded, pair); }},
    {"Order of the language", [](const Json& pair) { return Order(text::CompareLanguage, pair); }},
    {"Begins with",
     [](const Json& pair) { return text::BeginsWithFolded(pair[0].get<std::string>(), pair[1].get<std::string>()); }},
};

TEST(Types, ConvertAndCompareAsListed) {
  std::ifstream file(TSV_TEST_DATA "/types.json");
  const Json listed = Json::parse(file);
  for (const auto& [name, cases] : listed.items()) {
    for (const Json& each : cases) {
      EXPECT_EQ(test::ShownResult([&] { return kListed.at(name)(each.at(0)); }), test::ShownResult(each.at(1)))
          << name << ": " << each;
    }
  }
}

TEST(Currency, ArithmeticIsExactUpToItsLimits) {
  EXPECT_EQ(Units(kMost - 1) + Units(1), Units(kMost));
  EXPECT_EQ(Units(kLeast + 1) - Units(1), Units(kLeast));
  EXPECT_EQ(Units(-25) * 4, Units(-100));
  EXPECT_EQ(-Units(7), Units(-7));
  EXPECT_EQ(Units(kLeast + 1).Abs(), Units(kMost));
  EXPECT_EQ(NumberOf([] { return Units(kLeast) - Units(1); }), 6);
  EXPECT_EQ(NumberOf([] { return -Units(kLeast); }), 6);
  EXPECT_EQ(NumberOf([] { return Units(kLeast).Abs(); }), 6);
  EXPECT_EQ(NumberOf([] { return Units(kMost / 2 + 1) * 2; }), 6);
  EXPECT_EQ(NumberOf([] { return Currency::FromInteger(922'337'203'685'478); }), 6);
  EXPECT_EQ(NumberOf([] { return Currency::FromDouble(std::numeric_limits<double>::quiet_NaN()); }), 6);
  Currency amount = Units(kMost);
  EXPECT_EQ(NumberOf([&] { return amount += Units(1); }), 6);
  EXPECT_EQ(amount, Units(kMost));
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
  EXPECT_EQ(Date::FromCivil({2008, 7, 5, 9, 8, 7}).ToBrazilian(), "05/07/2008 09:08:07");
  EXPECT_EQ(Date::FromCivil(100, 7, 5).ToBrazilian(), "05/07/0100");
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

TEST(Text, CountsAndCutsCharacters) {
  EXPECT_EQ(text::Length("açúcar"), 6u);
  EXPECT_EQ(text::Length("a\xE7"), 2u);
  EXPECT_EQ(text::Length("\xF0\x9F\x92\xB0"), 1u);
  EXPECT_EQ(text::Trim("  a b "), "a b");
  EXPECT_EQ(text::Trim("\t\u00A0 "), "\t\u00A0");
  EXPECT_EQ(text::Trim("   "), "");
  EXPECT_EQ(text::Upper("a\xE7z"), "A\xE7Z");
  for (const std::string valid : {"", "Ação", "\xF4\x8F\xBF\xBF"}) EXPECT_TRUE(text::IsValidUtf8(valid));
  for (const std::string broken : {"\xE7", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82", "\x80"}) {
    EXPECT_FALSE(text::IsValidUtf8(broken));
  }
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
