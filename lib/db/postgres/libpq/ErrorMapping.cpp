#include "db/postgres/libpq/ErrorMapping.h"

#include <charconv>

#include "db/EngineError.h"

namespace tsv::db::postgres {
namespace {

Erro Engine(EngineError error, std::string_view subject = {}) {
  return Erro(static_cast<std::int32_t>(error), TextOf(error, subject));
}

Erro Runtime(RuntimeError error) { return Erro(static_cast<std::int32_t>(error), TextOf(error)); }

std::string_view Part(const PGresult* result, int code) noexcept {
  const char* text = PQresultErrorField(result, code);
  return text ? text : "";
}

// Ours below 1000 are the runtime's, the others the engine's.
Erro Numbered(std::int32_t number, std::string_view subject) {
  constexpr std::int32_t kFirstOfEngine = 1000;
  if (number < kFirstOfEngine) return Runtime(static_cast<RuntimeError>(number));
  return Engine(static_cast<EngineError>(number), subject);
}

Erro CheckError(std::string_view constraint) {
  std::int32_t number = 0;
  const auto [end, problem] = std::from_chars(constraint.data(), constraint.data() + constraint.size(), number);
  if (problem != std::errc() || end == constraint.data() + constraint.size())
    return Engine(EngineError::ValidationRule, constraint);
  return Numbered(number, constraint.substr(static_cast<std::size_t>(end - constraint.data()) + 1));
}

// Of a statement that the compiler wrote it is the table that it changes.
std::string_view FirstQuotedName(std::string_view sql) {
  const std::size_t begin = sql.find('"');
  const std::size_t end = begin == std::string_view::npos ? begin : sql.find('"', begin + 1);
  return end == std::string_view::npos ? std::string_view() : sql.substr(begin + 1, end - begin - 1);
}

// The quoted name that stands at the place, which counts characters from 1.
std::string_view NameAt(std::string_view sql, std::string_view place) {
  std::size_t character = 0;
  std::from_chars(place.data(), place.data() + place.size(), character);
  std::size_t at = 0;
  for (; at < sql.size() && character > 0; ++at) {
    const bool continues = (static_cast<unsigned char>(sql[at]) & 0xC0U) == 0x80U;
    if (!continues && --character == 0) break;
  }
  return FirstQuotedName(sql.substr(at));
}

// The server names the table that refers, whichever side broke the relationship: the statement tells.
Erro ForeignKeyError(const PGresult* result, std::string_view sql) {
  const std::string_view table = FirstQuotedName(sql);
  const bool missing = !sql.starts_with("DELETE") && table == Part(result, PG_DIAG_TABLE_NAME);
  return Engine(missing ? EngineError::MissingRelatedRecord : EngineError::RelatedRecords, table);
}

// Classes of the standard and the server's own, most of them by their first two characters.
Erro OfState(std::string_view state, const PGresult* result, std::string_view sql, std::string_view place) {
  if (state == "25P02") return Engine(EngineError::InvalidOperation, "a transação falhou e só pode ser desfeita");
  if (state == "25006") return Engine(EngineError::ReadOnly);
  if (state == "42501") return Engine(EngineError::CannotOpen, place);
  if (state == "42P01") return Engine(EngineError::UnknownTable, NameAt(sql, Part(result, PG_DIAG_STATEMENT_POSITION)));
  if (state == "55P03" || state == "40P01") return Engine(EngineError::Locked);
  if (state == "40001" || state == "57014") return Engine(EngineError::Interrupted);
  if (state == "22003") return Runtime(RuntimeError::Overflow);
  if (state == "22012") return Runtime(RuntimeError::DivisionByZero);
  if (state == "53200") return Runtime(RuntimeError::OutOfMemory);
  if (state.starts_with("22")) return Engine(EngineError::ConversionError);
  if (state.starts_with("53") || state.starts_with("58") || state.starts_with("XX"))
    return Engine(EngineError::DiskError);
  if (state.starts_with("54")) return Engine(EngineError::Unsupported, "consulta complexa demais");
  return Erro(static_cast<std::int32_t>(RuntimeError::Internal), std::string(TextOf(RuntimeError::Internal))
                                                                     .append(" (")
                                                                     .append(Part(result, PG_DIAG_MESSAGE_PRIMARY))
                                                                     .append(")"));
}

}  // namespace

Erro ErrorOf(const PGresult* result, std::string_view sql, std::string_view place) {
  const std::string_view state = Part(result, PG_DIAG_SQLSTATE);
  const std::string_view constraint = Part(result, PG_DIAG_CONSTRAINT_NAME);
  if (state.starts_with("T0") || state.starts_with("T3")) {
    std::int32_t number = 0;
    std::from_chars(state.data() + 1, state.data() + state.size(), number);
    return Numbered(number, {});  // our functions name no subject
  }
  if (state == "23505") return Engine(EngineError::DuplicateKey, constraint);
  if (state == "23503") return ForeignKeyError(result, sql);
  if (state == "23514") return CheckError(constraint);
  if (state == "23502") {
    return Engine(EngineError::RequiredField,
                  std::string(Part(result, PG_DIAG_TABLE_NAME)).append(".").append(Part(result, PG_DIAG_COLUMN_NAME)));
  }
  return OfState(state, result, sql, place);
}

// libpq's reason is its first line, after the name of the server.
Erro ConnectionError(const PGconn* connection) {
  std::string_view reason = PQerrorMessage(connection);
  reason = reason.substr(0, reason.find('\n'));
  return Engine(EngineError::ConnectionFailed, reason);
}

bool IsShutdown(const PGresult* result) noexcept {
  const std::string_view state = Part(result, PG_DIAG_SQLSTATE);
  return state.starts_with("57P") || state.starts_with("08") || state == "25P03";
}

}  // namespace tsv::db::postgres
