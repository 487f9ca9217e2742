#pragma once

#include "db/Catalog.h"
#include "db/postgres/libpq/Connection.h"
#include "types/Variant.h"

// How values go to the server and come back: amounts as numeric, dates as timestamp, Booleans as boolean.
namespace tsv::db::postgres {

Oid ServerTypeOf(ValueType type) noexcept;

// The value converted to the type (13, 6 or 94 when it cannot be), as a parameter of ServerTypeOf(type).
void AddValue(Values& values, const Variant& value, ValueType type);

// A value of a result as one of the type; a number outside the type's range raises 6.
Variant ReadValue(const Result& result, int row, int column, ValueType type);

}  // namespace tsv::db::postgres
