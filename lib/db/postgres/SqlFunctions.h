#pragma once

#include <string>

namespace tsv::db::postgres {

// The script that creates, in the schema tesovia, what the server needs to answer Jet SQL as the other engines do:
// comparison keys of texts, LIKE, conversions, arithmetic and the value functions. What is called for every row is an
// expression that the planner writes in the call's place; the rest is PL/pgSQL. They need no rights beyond the schema,
// no extension and no locale. An error has the SQLSTATE T and four digits: the runtime's number or the engine's.
std::string SqlFunctions();

}  // namespace tsv::db::postgres
