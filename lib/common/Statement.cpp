#include "common/Statement.h"

#include "common/Literals.h"
#include "common/Session.h"
#include "db/EngineError.h"

namespace tsv::Module1 {

namespace {

void RefuseUnpairedQuote(std::string_view value) {
  for (std::size_t i = 0; i < value.size(); ++i) {
    const bool opensPair = value[i] == '\'' && value.substr(i + 1, 1) == "'";
    if (opensPair) {
      ++i;
    } else if (value[i] == '\'' || value[i] == '\0') {
      db::Raise(db::EngineError::SyntaxInExpression);
    }
  }
}

}  // namespace

Literal TextLiteral(std::string_view value) {
  RefuseUnpairedQuote(value);
  return Literal(StoDB(value, "", ""));
}

Literal TextOrNull(std::string_view value) {
  RefuseUnpairedQuote(value);
  return Literal(StoDB(value, "NULL", ""));
}

Literal NumberLiteral(std::int32_t value) { return Literal(std::to_string(value)); }

Literal NumberOrNull(std::int32_t value) { return Literal(NtoDB(std::to_string(value), "NULL", "")); }

Literal AmountLiteral(Currency value) { return Literal(value.ToFixed2()); }

Literal DateLiteral(Date value) { return Literal(DataSQL(value, 1)); }

Literal DateOnlyLiteral(Date value) { return Literal(value == Date() ? "#12/30/1899#" : DataSQL(value, 2)); }

std::int32_t Statement::Execute() const {
  const std::shared_ptr<db::Database> banco = BancoAberto();
  banco->Execute(text_, db::dbFailOnError);
  return banco->RecordsAffected();
}

void Statement::ExecuteOrRefuse(TS_ERROS numero, std::string_view refusal) const {
  if (Execute() == 0) GerarErro(numero, refusal);
}

void Anunciar(const std::vector<const Statement*>& next, const db::QueryCall& query) {
  std::vector<std::string_view> texts;
  texts.reserve(next.size());
  for (const Statement* statement : next) texts.push_back(statement->Text());
  BancoAberto()->Announce(texts, &query);
}

}  // namespace tsv::Module1
