#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "db/Catalog.h"
#include "db/jet/Dialect.h"
#include "db/jet/Lexer.h"

namespace tsv::db::jet {

enum class StatementKind { Select, Insert, Update, Delete, CreateTable };

struct ResultColumn {
  std::string name;
  ValueType type = ValueType::Null;
};

// What the engine binds to its parameter of the same place (the first is Dialect::Parameter(1)).
struct ParameterSlot {
  ValueType type = ValueType::Null;      // the form in which the value is bound
  std::optional<std::uint32_t> literal;  // place in Lexed::literals; otherwise a named parameter
  std::string name;
};

// One statement in the engine's SQL, valid for every text of the same shape whose fixed literals are equal.
struct Compiled {
  StatementKind kind = StatementKind::Select;
  std::string sql;                    // empty for CreateTable
  std::vector<ResultColumn> columns;  // of a SELECT
  std::vector<ParameterSlot> parameters;
  std::vector<std::string> names;                        // the named parameters, in the order of their first mention
  std::vector<std::pair<std::uint32_t, Variant>> fixed;  // literals that shaped the SQL itself (TOP 3, ORDER BY 2)
  Table created;                                         // of CreateTable
};

// Raises the engine errors of its grammar and names; a construct that is not supported raises 3251 and names it.
Compiled Compile(const Lexed& lexed, const Catalog& catalog, const Dialect& dialect);

}  // namespace tsv::db::jet
