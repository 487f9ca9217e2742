#pragma once

#include <sqlite3.h>

#include "db/Catalog.h"
#include "db/sqlite/Connection.h"
#include "types/Variant.h"

// How values lie in a file: amounts as integers of ten-thousandths, Booleans as 0 and 1, dates as
// 'yyyy-mm-dd hh:mm:ss', always with the time.
namespace tsv::db::sqlite {

// Lent texts must stay where they are until the statement is reset.
enum class Texts { Copied, Lent };

// The value converted to the type (13, 6 or 94 when it cannot be). The type Null takes the value's own.
void BindStored(Statement& statement, int place, const Variant& value, ValueType type, Texts texts = Texts::Copied);
void ReturnStored(sqlite3_context* context, const Variant& value, ValueType type);

// A number outside the type's range raises 6, also one that SQLite let overflow into a floating-point number.
Variant ReadStored(sqlite3_value* value, ValueType type);

}  // namespace tsv::db::sqlite
