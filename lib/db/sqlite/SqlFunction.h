#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <span>
#include <string_view>

#include "db/Catalog.h"
#include "db/jet/Functions.h"
#include "db/sqlite/Connection.h"

// How a function of ours stands in SQLite; each Register... below is one family of them.
namespace tsv::db::sqlite {

// One call of a function: its arguments, and where its result goes.
struct FunctionCall {
  sqlite3_context* context;
  std::span<sqlite3_value* const> arguments;
  const jet::Function* function;  // of a value function of Jet SQL
  ValueType any;                  // what its arguments of any type are

  std::int64_t Integer(std::size_t i) const { return sqlite3_value_int64(arguments[i]); }
  double Real(std::size_t i) const { return sqlite3_value_double(arguments[i]); }
  std::string_view Text(std::size_t i) const;

  void Return(std::int64_t value) const { sqlite3_result_int64(context, value); }
  void Return(bool value) const { sqlite3_result_int(context, value ? 1 : 0); }
  void Return(double value) const { sqlite3_result_double(context, value); }
  void Return(std::string_view text) const;
};

using FunctionBody = void (*)(const FunctionCall& call);

struct FunctionTraits {
  bool passesNull = true;  // a Null argument makes the result Null without a call
  bool constant = true;    // the same arguments give the same result
  const jet::Function* function = nullptr;
  ValueType any = ValueType::Null;
};

void AddFunction(Connection& connection, const char* name, int arguments, FunctionBody body,
                 FunctionTraits traits = {});

// Keeps what the running handler caught for the statement to raise, and stops the statement.
void StopStatement(Connection& connection, sqlite3_context* context) noexcept;

void RegisterJetFunctions(Connection& connection);
void RegisterHelperFunctions(Connection& connection);
void RegisterAggregates(Connection& connection);

}  // namespace tsv::db::sqlite
