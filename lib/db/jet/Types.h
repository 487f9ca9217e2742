#pragma once

#include "db/Catalog.h"

namespace tsv::db::jet {

bool IsNumber(ValueType type) noexcept;  // Byte, Long, Decimal, Currency, Double, and Boolean, which is -1 or 0

// The type in which two numbers meet: the exact ones stay exact until a double joins them.
ValueType CommonNumber(ValueType a, ValueType b) noexcept;

// The type of a value that may be either of two, as in IIF or UNION.
ValueType CommonValue(ValueType a, ValueType b) noexcept;

// The type in which two values are compared; a text meets only a text (3464 otherwise).
ValueType ComparisonType(ValueType a, ValueType b);

ValueType TypeOf(const Variant& literal) noexcept;  // of a literal of the lexer: a Currency is written as a Decimal

}  // namespace tsv::db::jet
