#include "db/sqlite/SqlFunctions.h"

#include <algorithm>
#include <memory>
#include <new>

#include "db/sqlite/SqlFunction.h"
#include "types/Erro.h"
#include "types/Text.h"

namespace tsv::db::sqlite {
namespace {

struct Registration {
  Connection* connection;
  FunctionBody body;
  FunctionTraits traits;
};

void Invoke(sqlite3_context* context, int count, sqlite3_value** values) {
  const auto& registration = *static_cast<const Registration*>(sqlite3_user_data(context));
  const std::span<sqlite3_value* const> arguments(values, static_cast<std::size_t>(count));
  const auto isNull = [](sqlite3_value* value) { return sqlite3_value_type(value) == SQLITE_NULL; };
  if (registration.traits.passesNull && std::any_of(arguments.begin(), arguments.end(), isNull)) return;
  try {
    registration.body({context, arguments, registration.traits.function, registration.traits.any});
  } catch (...) {
    StopStatement(*registration.connection, context);
  }
}

using Comparison = int (*)(std::string_view, std::string_view);

template <Comparison compare>
int Collate(void*, int sizeA, const void* a, int sizeB, const void* b) {
  return compare({static_cast<const char*>(a), static_cast<std::size_t>(sizeA)},
                 {static_cast<const char*>(b), static_cast<std::size_t>(sizeB)});
}

}  // namespace

std::string_view FunctionCall::Text(std::size_t i) const {
  const unsigned char* text = sqlite3_value_text(arguments[i]);
  const int size = sqlite3_value_bytes(arguments[i]);
  return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(text ? size : 0)};
}

void FunctionCall::Return(std::string_view text) const {
  sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void AddFunction(Connection& connection, const char* name, int arguments, FunctionBody body, FunctionTraits traits) {
  const int flags = SQLITE_UTF8 | (traits.constant ? SQLITE_DETERMINISTIC : 0);
  auto registration = std::make_unique<Registration>(Registration{&connection, body, traits});
  const auto destroy = [](void* data) { delete static_cast<Registration*>(data); };
  const int code = sqlite3_create_function_v2(connection.Handle(), name, arguments, flags, registration.release(),
                                              Invoke, nullptr, nullptr, destroy);
  if (code != SQLITE_OK) connection.Raise(code);
}

void StopStatement(Connection& connection, sqlite3_context* context) noexcept {
  try {
    throw;
  } catch (const Erro& erro) {
    connection.FunctionFailure() = erro;
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
    return;
  } catch (...) {
    connection.FunctionFailure() =
        Erro(static_cast<std::int32_t>(RuntimeError::Internal), TextOf(RuntimeError::Internal));
  }
  sqlite3_result_error(context, "", 0);
}

void RegisterFunctions(Connection& connection) {
  RegisterJetFunctions(connection);
  RegisterHelperFunctions(connection);
  RegisterAggregates(connection);
  sqlite3* handle = connection.Handle();
  sqlite3_create_collation(handle, "TSV_TEXTO", SQLITE_UTF8, nullptr, Collate<text::CompareFolded>);
  sqlite3_create_collation(handle, "TSV_ORDEM", SQLITE_UTF8, nullptr, Collate<text::CompareLanguage>);
}

}  // namespace tsv::db::sqlite
