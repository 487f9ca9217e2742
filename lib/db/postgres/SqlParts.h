#pragma once

#include <string>
#include <string_view>

// The parts of the script of functions, one for each subject, and how each function in them is declared. Signatures
// are without the schema, "tsv_dobra(t text)"; the same arguments always give the same result.
namespace tsv::db::postgres {

std::string SqlText();
std::string SqlOrder();
std::string SqlLike();
std::string SqlNumbers();
std::string SqlConversions();
std::string SqlTextFunctions();
std::string SqlDates();
std::string SqlFormat();

// An expression that the planner can put in the place of the call; Null arguments reach it.
std::string Expression(std::string_view signature, std::string_view result, std::string_view expression);

// A body in PL/pgSQL; a Null argument makes the result Null without a call.
std::string Function(std::string_view signature, std::string_view result, std::string_view body);

// One that stands in an expression's branch that few rows take: its cost is not to count for all of them.
std::string RareFunction(std::string_view signature, std::string_view result, std::string_view body);

// A body that Null arguments reach.
std::string FunctionOfNulls(std::string_view signature, std::string_view result, std::string_view body);

// What most texts are made of, the most frequent first: translate() seeks each character from its table's beginning.
inline constexpr std::string_view kPlainLetters = " aeosrindutcmlp0123456789vghqbfzjxykw";

std::string Quoted(std::string_view text);  // as a literal of SQL

}  // namespace tsv::db::postgres
