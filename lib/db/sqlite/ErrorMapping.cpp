#include "db/sqlite/ErrorMapping.h"

#include <charconv>
#include <cstdint>

namespace tsv::db::sqlite {
namespace {

Erro Engine(EngineError error, std::string_view subject = {}) {
  return Erro(static_cast<std::int32_t>(error), TextOf(error, subject));
}

Erro Runtime(RuntimeError error) { return Erro(static_cast<std::int32_t>(error), TextOf(error)); }

// "UNIQUE constraint failed: Contas.Codigo" names the field after the colon.
std::string_view AfterColon(std::string_view message) {
  const std::size_t colon = message.find(": ");
  return colon == std::string_view::npos ? std::string_view() : message.substr(colon + 2);
}

Erro CheckError(std::string_view constraint) {
  std::int32_t number = 0;
  const auto [end, problem] = std::from_chars(constraint.data(), constraint.data() + constraint.size(), number);
  if (problem != std::errc() || end == constraint.data() + constraint.size()) {
    return Engine(EngineError::ValidationRule, constraint);
  }
  const std::string_view field = constraint.substr(static_cast<std::size_t>(end - constraint.data()) + 1);
  if (number == static_cast<std::int32_t>(RuntimeError::Overflow)) return Runtime(RuntimeError::Overflow);
  return Engine(static_cast<EngineError>(number), field);
}

// STRICT tables take no number with a fraction, or beyond 64 bits, into a whole column.
Erro DatatypeError(std::string_view message) {
  const bool overflow = message.find("REAL value in INT") != std::string_view::npos;
  return overflow ? Runtime(RuntimeError::Overflow) : Engine(EngineError::ConversionError);
}

// The first quoted name of a statement that the compiler wrote: the table that it changes.
std::string_view ChangedTable(std::string_view sql) {
  const std::size_t begin = sql.find('"');
  const std::size_t end = begin == std::string_view::npos ? begin : sql.find('"', begin + 1);
  return end == std::string_view::npos ? std::string_view() : sql.substr(begin + 1, end - begin - 1);
}

bool RefersToOthers(sqlite3* handle, std::string_view table) {
  sqlite3_stmt* query = nullptr;
  sqlite3_prepare_v2(handle, "SELECT 1 FROM pragma_foreign_key_list(?1)", -1, &query, nullptr);
  sqlite3_bind_text64(query, 1, table.data(), table.size(), SQLITE_STATIC, SQLITE_UTF8);
  const bool refers = sqlite3_step(query) == SQLITE_ROW;
  sqlite3_finalize(query);
  return refers;
}

// SQLite does not say which side of a relationship broke: the statement does.
Erro ForeignKeyError(sqlite3* handle, sqlite3_stmt* statement) {
  const char* text = statement ? sqlite3_sql(statement) : nullptr;
  const std::string_view sql = text ? text : "";
  const std::string_view table = ChangedTable(sql);
  const bool missing = sql.starts_with("INSERT") || (sql.starts_with("UPDATE") && RefersToOthers(handle, table));
  return Engine(missing ? EngineError::MissingRelatedRecord : EngineError::RelatedRecords, table);
}

Erro ConstraintError(sqlite3* handle, int code, std::string_view message, sqlite3_stmt* statement) {
  switch (code) {
    case SQLITE_CONSTRAINT_CHECK:
      return CheckError(AfterColon(message));
    case SQLITE_CONSTRAINT_NOTNULL:
      return Engine(EngineError::RequiredField, AfterColon(message));
    case SQLITE_CONSTRAINT_FOREIGNKEY:
      return ForeignKeyError(handle, statement);
    case SQLITE_CONSTRAINT_DATATYPE:
      return DatatypeError(message);
    default:
      return Engine(EngineError::DuplicateKey, AfterColon(message));
  }
}

// What is wrong with the statement itself; its texts hold names and no values.
Erro StatementError(std::string_view message) {
  if (message == "integer overflow") return Runtime(RuntimeError::Overflow);
  for (const char* limit : {"too many", "too large", "too deep", "stack overflow", "at most", "variable number"}) {
    if (message.find(limit) != std::string_view::npos)
      return Engine(EngineError::Unsupported, "consulta complexa demais");
  }
  return Erro(static_cast<std::int32_t>(RuntimeError::Internal),
              std::string(TextOf(RuntimeError::Internal)).append(" (").append(message).append(")"));
}

}  // namespace

Erro ErrorOf(sqlite3* handle, int code, sqlite3_stmt* statement) {
  const std::string message = handle ? sqlite3_errmsg(handle) : "";
  switch (code & 0xFF) {
    case SQLITE_CONSTRAINT:
      return ConstraintError(handle, code, message, statement);
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return Engine(EngineError::Locked);
    case SQLITE_READONLY:
      return Engine(EngineError::ReadOnly);
    case SQLITE_IOERR:
    case SQLITE_FULL:
      return Engine(EngineError::DiskError);
    case SQLITE_CANTOPEN:
    case SQLITE_PERM: {
      const char* file = handle ? sqlite3_db_filename(handle, "main") : nullptr;
      return Engine(EngineError::CannotOpen, file ? file : "");
    }
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return Erro(static_cast<std::int32_t>(EngineError::UnrecognisedFile),
                  "O arquivo do banco de dados está danificado.");
    case SQLITE_NOMEM:
      return Runtime(RuntimeError::OutOfMemory);
    case SQLITE_TOOBIG:
      return Engine(EngineError::Unsupported, "texto longo demais");
    case SQLITE_MISMATCH:
      return Engine(EngineError::ConversionError);
    default:
      return StatementError(message);
  }
}

}  // namespace tsv::db::sqlite
