#include "db/jet/Functions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <stdexcept>

#include "db/jet/TextValues.h"
#include "support/JsonValues.h"

namespace tsv::db::jet {
namespace {

// Calls a function of the table as an engine does.
Variant Call(std::string_view name, const std::vector<Variant>& arguments) {
  if (name == "Like") return Like(TextOf(arguments[0]), TextOf(arguments[1]));
  const Function* function = FindFunction(name);
  if (!function) throw std::logic_error("no function " + std::string(name));
  return function->call(arguments);
}

TEST(Functions, GiveTheListedResults) {
  std::ifstream file(TSV_TEST_DATA "/functions.json");
  const test::Json listed = test::Json::parse(file);
  for (const auto& [subject, calls] : listed.items()) {
    for (const test::Json& call : calls) {
      std::vector<Variant> arguments;
      for (const test::Json& argument : call[1]) arguments.push_back(test::ValueOf(argument));
      EXPECT_EQ(test::ShownResult([&] { return Call(call[0].get<std::string>(), arguments); }),
                test::ShownResult(call.at(2)))
          << subject << ": " << call;
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
