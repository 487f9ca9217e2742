#include <cstdint>
#include <type_traits>

#include "db/EngineError.h"
#include "db/sqlite/Rounding.h"
#include "db/sqlite/SqlFunction.h"

namespace tsv::db::sqlite {
namespace {

// SQLite gives each group a block of zeroed bytes, which is where a state must begin.
template <typename State>
State* StateOf(sqlite3_context* context) {
  static_assert(std::is_trivial_v<State>);
  return static_cast<State*>(sqlite3_aggregate_context(context, sizeof(State)));
}

Connection& ConnectionOf(sqlite3_context* context) { return *static_cast<Connection*>(sqlite3_user_data(context)); }

// One value of the group, whatever its type: the first, the last, or the only one.
struct Kept {
  sqlite3_value* value;
  bool any;
};

void Keep(sqlite3_context* context, Kept& kept, sqlite3_value* value) {
  sqlite3_value_free(kept.value);
  kept.value = sqlite3_value_dup(value);
  kept.any = true;
  if (!kept.value) sqlite3_result_error_nomem(context);
}

void StepFirst(sqlite3_context* context, int, sqlite3_value** values) {
  auto* kept = StateOf<Kept>(context);
  if (kept && !kept->any) Keep(context, *kept, values[0]);
}

void StepLast(sqlite3_context* context, int, sqlite3_value** values) {
  if (auto* kept = StateOf<Kept>(context)) Keep(context, *kept, values[0]);
}

void StepSingle(sqlite3_context* context, int, sqlite3_value** values) {
  auto* kept = StateOf<Kept>(context);
  if (!kept) return;
  try {
    if (kept->any) Raise(EngineError::SubqueryRows);
    Keep(context, *kept, values[0]);
  } catch (...) {
    StopStatement(ConnectionOf(context), context);
  }
}

void FinishKept(sqlite3_context* context) {
  auto* kept = static_cast<Kept*>(sqlite3_aggregate_context(context, 0));
  if (!kept || !kept->value) return;
  sqlite3_result_value(context, kept->value);
  sqlite3_value_free(kept->value);
  kept->value = nullptr;
}

// The sum in two halves of 32 bits and more: in one, large amounts would overflow before they are divided.
struct Total {
  std::int64_t high;
  std::int64_t low;
  std::int64_t count;
};

void StepAverage(sqlite3_context* context, int, sqlite3_value** values) {
  auto* total = StateOf<Total>(context);
  if (!total || sqlite3_value_type(values[0]) == SQLITE_NULL) return;
  const std::int64_t value = sqlite3_value_int64(values[0]);
  total->high += value >> 32;
  total->low += value & 0xFFFF'FFFF;
  ++total->count;
}

void FinishAverage(sqlite3_context* context) {
  const auto* total = static_cast<const Total*>(sqlite3_aggregate_context(context, 0));
  if (!total || total->count == 0) return;
  sqlite3_result_int64(context, Average(total->high, total->low, total->count));
}

using Step = void (*)(sqlite3_context*, int, sqlite3_value**);
using Finish = void (*)(sqlite3_context*);

void Add(Connection& connection, const char* name, Step step, Finish finish) {
  const int code = sqlite3_create_function_v2(connection.Handle(), name, 1, SQLITE_UTF8, &connection, nullptr, step,
                                              finish, nullptr);
  if (code != SQLITE_OK) connection.Raise(code);
}

}  // namespace

void RegisterAggregates(Connection& connection) {
  Add(connection, "tsv_first", StepFirst, FinishKept);
  Add(connection, "tsv_last", StepLast, FinishKept);
  Add(connection, "tsv_single", StepSingle, FinishKept);
  Add(connection, "tsv_average_currency", StepAverage, FinishAverage);
}

}  // namespace tsv::db::sqlite
