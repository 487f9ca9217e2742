#include <gtest/gtest.h>
#include <libpq-fe.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "db/jet/Functions.h"
#include "db/jet/TextValues.h"
#include "db/postgres/SqlFunctions.h"
#include "support/Chance.h"
#include "support/JsonValues.h"
#include "types/Text.h"

// The functions that the server gets answer as the library's own do, in a database whose locale has its own ideas of
// case and order. TSV_SERVIDOR is the server's address.
namespace tsv::db::postgres {
namespace {

using jet::ArgumentKind;
using test::Chance;
using Values = std::vector<Variant>;
using Connection = std::unique_ptr<PGconn, decltype(&PQfinish)>;
using Result = std::unique_ptr<PGresult, decltype(&PQclear)>;

Connection Connect(const char* address, const char* database) {
  const char* const names[] = {"dbname", database ? "dbname" : nullptr, nullptr};
  const char* const values[] = {address, database, nullptr};
  Connection connection(PQconnectdbParams(names, values, 1), PQfinish);
  if (PQstatus(connection.get()) != CONNECTION_OK) throw std::runtime_error(PQerrorMessage(connection.get()));
  PQsetNoticeProcessor(
      connection.get(), [](void*, const char*) {}, nullptr);
  return connection;
}

Result Ask(const Connection& connection, const std::string& sql) {
  return Result(PQexec(connection.get(), sql.c_str()), PQclear);
}

bool Failed(const Result& result) { return PQresultStatus(result.get()) == PGRES_FATAL_ERROR; }

void Execute(const Connection& connection, const std::string& sql) {
  if (Failed(Ask(connection, sql))) throw std::runtime_error(PQerrorMessage(connection.get()));
}

const char* SqlType(const Variant& value) {
  constexpr const char* types[] = {"text",   "text",    "boolean",   "integer", "integer",
                                   "float8", "numeric", "timestamp", "text"};
  return types[value.index()];
}

std::string Literal(const Variant& value) {
  if (IsNull(value)) return "NULL";
  if (const auto* condition = std::get_if<bool>(&value)) return *condition ? "TRUE" : "FALSE";
  const std::string type = std::string("::") + SqlType(value);
  std::string text;
  if (const auto* number = std::get_if<double>(&value)) {
    char digits[32];
    text.assign(digits, std::to_chars(digits, digits + sizeof digits, *number).ptr);
  } else if (const auto* date = std::get_if<Date>(&value)) {
    text = date->ToIso();
  } else {
    for (const char c : jet::TextOf(value)) text.append(c == '\'' ? "''" : std::string(1, c));
  }
  return "'" + text + "'" + type;
}

// A value that the server gives, of the type that it has there.
Variant ValueOf(const Result& result, int column) {
  if (PQgetisnull(result.get(), 0, column)) return Null{};
  const std::string text = PQgetvalue(result.get(), 0, column);
  switch (PQftype(result.get(), column)) {
    case 16:
      return text == "t";
    case 23:
      return static_cast<std::int32_t>(std::stol(text));
    case 701:
      return std::strtod(text.c_str(), nullptr);
    case 1700:
      return jet::ParseCurrency(text);
    case 1114:
      return Date::FromText(text).value();
    default:
      return text;
  }
}

std::string ErrorOf(const Result& result) {
  const std::string state = PQresultErrorField(result.get(), PG_DIAG_SQLSTATE);
  if (state[0] == 'T') return "error " + std::to_string(std::stoi(state.substr(1)));
  if (state == "22003") return "error 6";
  if (state == "22012") return "error 11";
  return PQresultErrorMessage(result.get());
}

std::string Joined(const Values& values) {
  std::string list;
  for (const Variant& value : values) list.append(list.empty() ? "" : ", ").append(Literal(value));
  return list;
}

class ServerFunctions : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    address_ = std::getenv("TSV_SERVIDOR");
    if (!address_) return;
    name_ = "funcoes_" + std::to_string(getpid());
    Execute(Connect(address_, nullptr), "CREATE DATABASE " + name_ +
                                            " TEMPLATE template0 ENCODING 'UTF8' LOCALE 'C.UTF-8' "
                                            "LOCALE_PROVIDER icu ICU_LOCALE 'pt-BR'");
    server_ = Connect(address_, name_.c_str());
    Execute(server_, "CREATE SCHEMA tesovia; SET search_path = ''; " + SqlFunctions());
  }

  static void TearDownTestSuite() {
    if (!address_) return;
    server_.reset();
    Execute(Connect(address_, nullptr), "DROP DATABASE " + name_);
  }

  void SetUp() override {
    if (!address_) GTEST_SKIP() << "TSV_SERVIDOR names no server";
  }

  static std::string Call(const std::string& name, const Values& values) {
    const Result result = Ask(server_, "SELECT tesovia." + name + "(" + Joined(values) + ")");
    return Failed(result) ? ErrorOf(result) : test::Shown(ValueOf(result, 0));
  }

  static const char* address_;
  static std::string name_;
  static Connection server_;
};

const char* ServerFunctions::address_ = nullptr;
std::string ServerFunctions::name_;
Connection ServerFunctions::server_(nullptr, PQfinish);

Variant AsKind(const Variant& value, ArgumentKind kind) {
  if (IsNull(value)) return value;
  switch (kind) {
    case ArgumentKind::Boolean:
      return ToBoolean(value);
    case ArgumentKind::Long:
      return ToLong(value);
    case ArgumentKind::Currency:
      return ToCurrency(value);
    case ArgumentKind::Double:
      return ToDouble(value);
    case ArgumentKind::Date:
      return ToDate(value);
    case ArgumentKind::Text:
      return jet::TextOf(value);
    case ArgumentKind::Any:
      break;
  }
  return value;
}

// What an engine gives for a call: a Byte is a whole number there, and a date must be one of the calendar.
Variant AsStored(const Variant& value) {
  if (const auto* byte = std::get_if<std::uint8_t>(&value)) return std::int32_t{*byte};
  if (const auto* date = std::get_if<Date>(&value)) return Date::FromText(date->ToIso()).value();
  return value;
}

std::string Expected(const jet::Function& function, const Values& values) {
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
      Values values;
      for (const test::Json& value : call[1]) {
        const ArgumentKind kind = function ? function->arguments[values.size()] : ArgumentKind::Text;
        values.push_back(AsKind(test::ValueOf(value), kind));
      }
      std::string expected = test::ShownResult(call.at(2));
      if (expected.starts_with("Byte")) expected.replace(0, 4, "Long");
      EXPECT_EQ(Call((function ? "jet_" : "tsv_") + text::Lower(name), values), expected) << subject << ": " << call;
    }
  }
}

// Functions that keep a number's type are never given a condition or a text.
Values ValuesFor(const jet::Function& function, Chance& chance) {
  const bool keepsType = function.result == ValueType::Null;
  Values values;
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
      Values values = ValuesFor(function, chance);
      // The server's texts have no character 0.
      if (function.name == "String" && !std::holds_alternative<std::string>(values[1])) values[1] = 231;
      const std::string expected = Expected(function, values);
      if (expected.find('\0') != std::string::npos) continue;
      ASSERT_EQ(Call("jet_" + text::Lower(function.name), values), expected)
          << function.name << "(" << Joined(values) << ")";
    }
  }
}

TEST_F(ServerFunctions, ShowTheSessionsClock) {
  Execute(server_, "SET TimeZone = 'Asia/Tokyo'");
  const Result result = Ask(server_,
                            "SELECT tesovia.jet_now() = tesovia.jet_date() + (tesovia.jet_time() - '1899-12-30'),"
                            " abs(extract(epoch FROM now() AT TIME ZONE 'Asia/Tokyo' - tesovia.jet_now())) < 5");
  EXPECT_STREQ(PQgetvalue(result.get(), 0, 0), "t");
  EXPECT_STREQ(PQgetvalue(result.get(), 0, 1), "t");
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
  Chance chance(18);
  for (int i = 0; i < 2000; ++i) {
    const std::string a = chance.Text(8);
    const std::string b = Resembling(a, chance);
    const std::string pair = Literal(a) + " AS a, " + Literal(b) + " AS b";
    const auto order = [](const std::string& key) {
      const auto keyOf = [&](const char* text) { return "tesovia." + key + "(" + text + ") COLLATE pg_catalog.\"C\""; };
      return "CASE WHEN " + keyOf("a") + " < " + keyOf("b") + " THEN -1 WHEN " + keyOf("a") + " > " + keyOf("b") +
             " THEN 1 ELSE 0 END";
    };
    const Result result = Ask(server_, "SELECT " + order("tsv_texto") + ", " + order("tsv_ordem") +
                                           ", tesovia.tsv_dobra(a) FROM (SELECT " + pair + ") p");
    ASSERT_FALSE(Failed(result)) << ErrorOf(result);
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
    switch (chance.Below(8)) {
      case 0:
        pattern += "*";
        break;
      case 1:
        pattern += "?";
        break;
      case 2:
        pattern += chance.Below(2) == 0 ? "#" : "**";
        break;
      case 3:
        if (IsLigature(low) || IsLigature(high)) break;
        pattern.append(chance.Below(3) == 0 ? "[!" : "[").append(low).append("-").append(high).append("]");
        break;
      case 4:
        pattern.append(chance.Below(3) == 0 ? "[!" : "[").append(other).append(character).append("]");
        break;
      default:
        pattern += character;
    }
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
      EXPECT_EQ(Call(name, {tried, pattern}), expected) << Literal(tried) << " LIKE " << Literal(pattern);
    };
    check("tsv_like", jet::Like);
    check("tsv_comeca", jet::LikePrefix);
    ASSERT_FALSE(HasFailure());
  }
}

TEST_F(ServerFunctions, CalculateAsOperatorsDo) {
  const auto amount = [](std::int64_t units) { return Currency::FromTenThousandths(units); };
  const std::tuple<std::string, Values, std::string> calls[] = {
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
    EXPECT_EQ(Call("tsv_" + name, values), expected) << name << "(" << Joined(values) << ")";
  }
}

TEST_F(ServerFunctions, TakeTheOnlyRow) {
  const auto single = [](const std::string& rows) {
    const Result result = Ask(server_, "SELECT tesovia.tsv_single(array_agg(x)) FROM (VALUES " + rows + ") AS v (x)");
    return Failed(result) ? ErrorOf(result) : test::Shown(ValueOf(result, 0));
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
