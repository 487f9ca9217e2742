#include "db/jet/Functions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "db/jet/TextValues.h"
#include "types/Conversions.h"
#include "types/Erro.h"

namespace tsv::db::jet {
namespace {

using Json = nlohmann::json;

// A number with a point is a Double, one without a Long. Types that JSON lacks are named; dates are ISO, amounts have a
// decimal comma.
Variant ValueOf(const Json& json) {
  if (json.is_null()) return Null{};
  if (json.is_boolean()) return json.get<bool>();
  if (json.is_string()) return json.get<std::string>();
  if (json.is_number_integer()) return json.get<std::int32_t>();
  if (json.is_number()) return json.get<double>();
  if (json.contains("date")) return Date::FromText(json["date"].get<std::string>()).value();
  if (json.contains("currency")) return Currency::FromText(json["currency"].get<std::string>()).value();
  return json.at("byte").get<std::uint8_t>();
}

std::string Shown(const Variant& value) {
  return "type " + std::to_string(value.index()) + ": " + (IsNull(value) ? "Null" : TextOf(value));
}

// Calls a function of the table as an engine does.
Variant Call(std::string_view name, const std::vector<Variant>& arguments) {
  if (name == "Like") return Like(TextOf(arguments[0]), TextOf(arguments[1]));
  const Function* function = FindFunction(name);
  if (!function) throw std::logic_error("no function " + std::string(name));
  return function->call(arguments);
}

TEST(Functions, GiveTheListedResults) {
  std::ifstream file(TSV_TEST_DATA "/functions.json");
  const Json listed = Json::parse(file);
  for (const auto& [subject, calls] : listed.items()) {
    for (const Json& call : calls) {
      SCOPED_TRACE(subject + ": " + call.dump());
      const Json& expected = call.at(2);
      std::vector<Variant> arguments;
      for (const Json& argument : call[1]) arguments.push_back(ValueOf(argument));
      try {
        const Variant result = Call(call[0].get<std::string>(), arguments);
        EXPECT_EQ(Shown(result), expected.contains("error") ? "an error" : Shown(ValueOf(expected)));
      } catch (const Erro& erro) {
        EXPECT_EQ(Json({{"error", erro.Numero()}}), expected);
      }
    }
  }
}

TEST(Functions, TableIsConsistent) {
  for (const Function& function : AllFunctions()) {
    SCOPED_TRACE(function.name);
    EXPECT_EQ(FindFunction(function.name), &function) << "two functions of one name";
    EXPECT_LE(function.required, function.arguments.size());
    EXPECT_NE(function.call, nullptr);
    if (function.result == ValueType::Null) {
      ASSERT_FALSE(function.arguments.empty());
      EXPECT_EQ(function.arguments[0], ArgumentKind::Any);
    }
  }
  EXPECT_EQ(FindFunction("dateADD"), FindFunction("DateAdd"));
  EXPECT_EQ(FindFunction("NotThere"), nullptr);
}

TEST(Functions, TheClockShowsOneMoment) {
  const double before = Date::Now().Days();
  const double now = ToDate(Call("Now", {})).Days();
  const double today = ToDate(Call("Date", {})).Days();
  EXPECT_GE(now, before);
  EXPECT_LT(now - today, 1.0 + 1e-3);
  EXPECT_EQ(today, std::floor(today));
  EXPECT_LT(ToDate(Call("Time", {})).Days(), 1);
  for (const char* name : {"Now", "Date", "Time"}) EXPECT_FALSE(FindFunction(name)->constant);
}

TEST(Like, PrefixIsThePatternWithAStar) {
  for (const std::string text : {"1.1.02", "1.1", "Ação", "a*b", "straße", "x[1]", ""}) {
    for (const std::string prefix : {"1.1", "1.1.", "AÇ", "a*", "A?", "#.#", "stras", "x[[]", "", "zz"}) {
      EXPECT_EQ(LikePrefix(text, prefix), Like(text, prefix + "*")) << text << " LIKE " << prefix << "*";
    }
  }
}

}  // namespace
}  // namespace tsv::db::jet
