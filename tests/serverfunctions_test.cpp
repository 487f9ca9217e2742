#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <memory>
#include <tuple>

#include "db/jet/Functions.h"
#include "db/jet/TextValues.h"
#include "db/postgres/SqlFunctions.h"
#include "db/postgres/libpq/ServerValue.h"
#include "support/Chance.h"
#include "support/JsonValues.h"
#include "support/LedgerPlace.h"
#include "types/Text.h"

// The functions that the server gets answer as the library's own do, in a database whose locale has its own ideas of
// case and order. TSV_SERVIDOR is the server's address.
namespace tsv::db::postgres {
namespace {

using jet::ArgumentKind;
using test::Chance;
using Arguments = std::vector<Variant>;

// A value that the server gives, of the type that it has there.
Variant ValueOf(const Result& result, int column = 0) {
  for (const auto type :
       {ValueType::Boolean, ValueType::Long, ValueType::Currency, ValueType::Double, ValueType::Date}) {
    if (result.Type(column) == ServerTypeOf(type)) return ReadValue(result, 0, column, type);
  }
  return ReadValue(result, 0, column, ValueType::Text);
}

ValueType TypeOf(const Variant& value) {
  constexpr ValueType types[] = {ValueType::Null,     ValueType::Null, ValueType::Boolean,
                                 ValueType::Byte,     ValueType::Long, ValueType::Double,
                                 ValueType::Currency, ValueType::Date, ValueType::Text};
  return types[value.index()];
}

std::string Shown(const Arguments& arguments) {
  std::string list;
  for (const Variant& value : arguments) list.append(list.empty() ? "" : ", ").append(test::Shown(value));
  return "(" + list + ")";
}

class ServerFunctions : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    if (!test::LedgerPlace::OnServer()) return;
    place_ = std::make_unique<test::LedgerPlace>();
    server_ = std::make_unique<Connection>(place_->Path(), std::chrono::seconds(10));
    server_->Execute("CREATE SCHEMA tesovia; SET search_path = ''; " + SqlFunctions());
  }

  static void TearDownTestSuite() {
    server_.reset();
    place_.reset();
  }

  void SetUp() override {
    if (!server_) GTEST_SKIP() << "TSV_SERVIDOR names no server";
  }

  // The arguments go to a function of the table as it takes them, to another as they are.
  static std::string Call(const std::string& name, const Arguments& arguments,
                          const jet::Function* function = nullptr) {
    Prepared call;
    Values values;
    std::string places;
    for (const Variant& argument : arguments) {
      ValueType type = TypeOf(argument);
      if (function) type = jet::TypeOf(function->arguments[values.Count()], type);
      AddValue(values, argument, type);
      call.types.push_back(IsNull(argument) ? 0 : ServerTypeOf(type));
      places += (places.empty() ? "$" : ", $") + std::to_string(values.Count());
    }
    call.sql = "SELECT tesovia." + name + "(" + places + ")";
    const std::string shown = test::ShownResult([&] { return ValueOf(server_->Run(call, values)); });
    server_->Forget(call);
    return shown;
  }

  static inline std::unique_ptr<test::LedgerPlace> place_;
  static inline std::unique_ptr<Connection> server_;
};

// What an engine gives for a call: a Byte is a whole number there, and a date must be one of the calendar.
Variant AsStored(const Variant& value) {
  if (const auto* byte = std::get_if<std::uint8_t>(&value)) return std::int32_t{*byte};
  if (const auto* date = std::get_if<Date>(&value)) return Date::FromText(date->ToIso()).value();
  return value;
}

std::string Expected(const jet::Function& function, const Arguments& values) {
  return test::ShownResult([&]() -> Variant {
    for (const Variant& value : values) {
      if (function.passesNull && IsNull(value)) return Null{};
    }
    return AsStored(function.call(values));
  });
}

TEST_F(ServerFunctions, GiveTheListedResults) {
  std::ifstream file(TSV_TEST_DATA "/functions.json");
  const test::Json listed = test::Json::parse(file);
  for (const auto& [subject, calls] : listed.items()) {
    for (const test::Json& call : calls) {
      const auto name = call[0].get<std::string>();
      const jet::Function* function = jet::FindFunction(name);
      Arguments arguments;
      for (const test::Json& json : call[1]) {
        const Variant value = test::ValueOf(json);
        arguments.push_back(function || IsNull(value) ? value : jet::TextOf(value));
      }
      std::string expected = test::ShownResult(call.at(2));
      if (expected.starts_with("Byte")) expected.replace(0, 4, "Long");
      EXPECT_EQ(Call((function ? "jet_" : "tsv_") + text::Lower(name), arguments, function), expected)
          << subject << ": " << call;
    }
  }
}

// Functions that keep a number's type are never given a condition or a text.
Arguments ArgumentsFor(const jet::Function& function, Chance& chance) {
  const bool keepsType = function.result == ValueType::Null;
  Arguments values;
  const std::size_t count = function.required + chance.Below(function.arguments.size() - function.required + 1);
  while (values.size() < count) {
    const Variant value = chance.Value(function.arguments[values.size()]);
    const bool isNumber = !std::holds_alternative<bool>(value) && !std::holds_alternative<std::string>(value);
    if (!keepsType || (isNumber && !IsNull(value))) values.push_back(value);
  }
  return values;
}

TEST_F(ServerFunctions, GiveTheLibrarysResults) {
  Chance chance(17);
  for (const jet::Function& function : jet::AllFunctions()) {
    if (!function.constant) continue;
    for (int i = 0; i < 500; ++i) {
      Arguments values = ArgumentsFor(function, chance);
      // The server's texts have no character 0.
      if (function.name == "String" && !std::holds_alternative<std::string>(values[1])) values[1] = 231;
      const std::string expected = Expected(function, values);
      if (expected.find('\0') != std::string::npos) continue;
      ASSERT_EQ(Call("jet_" + text::Lower(function.name), values, &function), expected)
          << function.name << Shown(values);
    }
  }
}

TEST_F(ServerFunctions, ShowTheSessionsClock) {
  server_->Execute("SET TimeZone = 'Asia/Tokyo'");
  const Result result = server_->Execute(
      "SELECT tesovia.jet_now() = tesovia.jet_date() + (tesovia.jet_time() - '1899-12-30'),"
      " abs(extract(epoch FROM now() AT TIME ZONE 'Asia/Tokyo' - tesovia.jet_now())) < 5",
      {});
  EXPECT_EQ(ValueOf(result, 0), Variant(true));
  EXPECT_EQ(ValueOf(result, 1), Variant(true));
}

int Sign(int order) { return order < 0 ? -1 : order > 0; }

// Another text that often equals the first, or differs in marks, joiners or case only.
std::string Resembling(const std::string& text, Chance& chance) {
  if (chance.Below(4) == 0) return chance.Text(6);
  std::string other = chance.Below(2) == 0 ? text::Upper(text) : text;
  static constexpr std::string_view extras[] = {"", " ", "-", "'", "á", "ss", "ß"};
  std::size_t place = 0;
  for (std::size_t i = chance.Below(4); i > 0 && place < other.size(); --i) text::NextCodePoint(other, place);
  return other.insert(place, chance.Of(extras)) + std::string(chance.Below(2), ' ');
}

TEST_F(ServerFunctions, CompareTextsAsTheLibraryDoes) {
  const auto order = [](const std::string& key) {
    const auto keyOf = [&](const char* text) { return "tesovia." + key + "(" + text + ") COLLATE pg_catalog.\"C\""; };
    return "CASE WHEN " + keyOf("a") + " < " + keyOf("b") + " THEN -1 WHEN " + keyOf("a") + " > " + keyOf("b") +
           " THEN 1 ELSE 0 END";
  };
  Chance chance(18);
  for (int i = 0; i < 2000; ++i) {
    const std::string a = chance.Text(8);
    const std::string b = Resembling(a, chance);
    const Result result = server_->Execute("SELECT " + order("tsv_texto") + ", " + order("tsv_ordem") +
                                               ", tesovia.tsv_dobra(a) FROM (SELECT $1::text AS a, $2::text AS b) p",
                                           {a, b});
    const std::string pair = Shown({a, b});
    ASSERT_EQ(ValueOf(result, 0), Variant(Sign(text::CompareFolded(a, b)))) << pair;
    ASSERT_EQ(ValueOf(result, 1), Variant(Sign(text::CompareLanguage(a, b)))) << pair;
    ASSERT_TRUE(text::BeginsWithFolded(a, std::get<std::string>(ValueOf(result, 2)))) << pair;
  }
}

bool IsLigature(std::string_view character) {
  text::FoldedReader reader(character);
  if (!reader.AtEnd()) reader.Next();
  return !reader.AtEnd();
}

// A pattern that the text may match. The ends of a range are in their order: the server refuses another at once, the
// library when it comes to it.
std::string PatternFor(const std::string& text, Chance& chance) {
  std::string pattern;
  for (std::size_t offset = 0; offset < text.size();) {
    const std::size_t begin = offset;
    text::NextCodePoint(text, offset);
    const std::string character = text.substr(begin, offset - begin);
    const std::string other = chance.Text(1);
    const auto [low, high] = std::minmax(
        character, other, [](const std::string& a, const std::string& b) { return text::CompareLanguage(a, b) < 0; });
    const std::string bracket = chance.Below(3) == 0 ? "[!" : "[";
    const std::string range = IsLigature(low) || IsLigature(high) ? "" : bracket + low + "-" + high + "]";
    const std::string list = bracket + other + character + "]";
    const std::string forms[] = {"*", "**", "?", "#", range, list, character, character, character};
    pattern += chance.Of(forms);
  }
  return pattern + chance.Text(1);
}

TEST_F(ServerFunctions, MatchPatternsAsTheLibraryDoes) {
  Chance chance(19);
  for (int i = 0; i < 2000; ++i) {
    const std::string text = chance.Text(6);
    const std::string pattern = PatternFor(text, chance);
    const std::string tried = chance.Below(2) == 0 ? text : Resembling(text, chance);
    const auto check = [&](const std::string& name, bool (*match)(std::string_view, std::string_view)) {
      const std::string expected = test::ShownResult([&] { return match(tried, pattern); });
      EXPECT_EQ(Call(name, {tried, pattern}), expected) << Shown({tried, pattern});
    };
    check("tsv_like", jet::Like);
    check("tsv_comeca", jet::LikePrefix);
    ASSERT_FALSE(HasFailure());
  }
}

TEST_F(ServerFunctions, CalculateAsOperatorsDo) {
  const auto amount = [](std::int64_t units) { return Currency::FromTenThousandths(units); };
  const std::tuple<std::string, Arguments, std::string> calls[] = {
      {"currency_multiply", {amount(15'000), amount(1)}, "Currency 0,0002"},
      {"currency_multiply", {amount(-25'000), amount(1)}, "Currency -0,0002"},
      {"currency_multiply", {amount(INT64_MAX), amount(10'000)}, "Currency 922337203685477,5807"},
      {"currency_multiply", {amount(INT64_MAX), amount(10'001)}, "error 6"},
      {"currency_multiply", {1, amount(12'345)}, "Currency 1,2345"},
      {"media", {amount(-3), 2}, "Currency -0,0002"},
      {"media", {amount(9'000'000'000'000'000'001), 2}, "Currency 450000000000000"},
      {"long_from_currency", {amount(25'000)}, "Long 2"},
      {"divide", {1.0, 4.0}, "Double 0,25"},
      {"divide", {1.0, 0.0}, "error 11"},
      {"divide", {1e300, 1e-300}, "error 6"},
      {"integer_divide", {-7.5, 3.4}, "Long -2"},
      {"integer_divide", {-2147483648.0, -1.0}, "error 6"},
      {"modulo", {-7.5, 3.4}, "Long -2"},
      {"modulo", {1.0, 0.4}, "error 11"},
      {"power", {-2.0, 3.0}, "Double -8"},
      {"power", {0.0, -1.0}, "error 11"},
      {"power", {-1.0, 0.5}, "error 5"},
      {"power", {10.0, 400.0}, "error 6"},
      {"power", {0.5, 2000.0}, "Double 0"},
  };
  for (const auto& [name, values, expected] : calls) {
    EXPECT_EQ(Call("tsv_" + name, values), expected) << name << Shown(values);
  }
}

TEST_F(ServerFunctions, TakeTheOnlyRow) {
  const auto single = [](const std::string& rows) {
    const std::string sql = "SELECT tesovia.tsv_single(array_agg(x)) FROM (VALUES " + rows + ") AS v (x)";
    return test::ShownResult([&] { return ValueOf(server_->Execute(sql, {})); });
  };
  EXPECT_EQ(single("(7)"), "Long 7");
  EXPECT_EQ(single("(NULL::date)"), "Null");
  EXPECT_EQ(single("(NULL), (1)"), "error 3354");
}

TEST_F(ServerFunctions, NullsBesideTexts) {
  EXPECT_EQ(Call("tsv_comeca", {"a", Null{}}), "Boolean True");
  EXPECT_EQ(Call("tsv_comeca", {Null{}, "a"}), "Null");
  EXPECT_EQ(Call("tsv_comeca", {Null{}, Null{}}), "Null");
  EXPECT_EQ(Call("tsv_concat", {"a", Null{}}), "Text a");
  EXPECT_EQ(Call("tsv_concat", {Null{}, Null{}}), "Null");
}

}  // namespace
}  // namespace tsv::db::postgres
