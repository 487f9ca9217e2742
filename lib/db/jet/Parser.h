#pragma once

#include "db/jet/Lexer.h"
#include "db/jet/Tree.h"

namespace tsv::db::jet {

// Raises the engine's syntax errors (3075, 3129, 3131, 3134, 3135, 3141, 3142, 3144) and 3251 for what is not
// supported. Messages name the language's own words only, never a part of the statement: it may hold a password.
Statement Parse(const Lexed& lexed);

}  // namespace tsv::db::jet
