#pragma once

#include <string>
#include <vector>

#include "db/jet/Compiler.h"
#include "db/jet/Tree.h"

namespace tsv::db::jet {

struct Written {
  std::string sql;
  std::vector<ParameterSlot> parameters;
};

// A bound statement (not CREATE TABLE) in the dialect's SQL.
Written Write(const Statement& statement, const Lexed& lexed, const Dialect& dialect);

}  // namespace tsv::db::jet
