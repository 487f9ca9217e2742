#include "db/postgres/SqlFunctions.h"

#include "db/postgres/SqlParts.h"

namespace tsv::db::postgres {
namespace {

std::string Declaration(std::string_view signature, std::string_view result, std::string_view language) {
  std::string text = "CREATE OR REPLACE FUNCTION tesovia.";
  text.append(signature).append(" RETURNS ").append(result).append(" LANGUAGE ").append(language);
  return text.append(" IMMUTABLE PARALLEL SAFE ");
}

std::string Body(std::string declaration, std::string_view body) {
  return declaration.append("AS $$ ").append(body).append(" $$;\n");
}

}  // namespace

std::string Expression(std::string_view signature, std::string_view result, std::string_view expression) {
  return Declaration(signature, result, "sql").append("RETURN ").append(expression).append(";\n");
}

std::string Function(std::string_view signature, std::string_view result, std::string_view body) {
  return Body(Declaration(signature, result, "plpgsql STRICT"), body);
}

std::string RareFunction(std::string_view signature, std::string_view result, std::string_view body) {
  return Body(Declaration(signature, result, "plpgsql STRICT COST 1"), body);
}

std::string FunctionOfNulls(std::string_view signature, std::string_view result, std::string_view body) {
  return Body(Declaration(signature, result, "plpgsql"), body);
}

std::string Quoted(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'') quoted += '\'';
    quoted += c;
  }
  return quoted + "'";
}

// In the order in which they use one another.
std::string SqlFunctions() {
  return SqlText() + SqlOrder() + SqlLike() + SqlNumbers() + SqlConversions() + SqlTextFunctions() + SqlDates() +
         SqlFormat();
}

}  // namespace tsv::db::postgres
