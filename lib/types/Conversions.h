#pragma once

#include <cstdint>
#include <string>

#include "types/NumberText.h"
#include "types/Variant.h"

// The runtime's conversions between value types, independent of the machine's locale. Null raises 94, a value that
// cannot be converted 13, a result out of range 6. Empty converts to zero, False or the empty text.
namespace tsv {

bool IsNumeric(const Variant& value);  // numbers, Booleans, Empty, and text that ReadNumber accepts; not dates
bool IsDate(const Variant& value);     // dates, and text that Date::FromText accepts

std::string ToText(const Variant& value);  // True is "True"; doubles in up to 15 significant digits, decimal comma
bool ToBoolean(const Variant& value);      // text "True"/"False" in any case, or a number
std::uint8_t ToByte(const Variant& value);
std::int32_t ToLong(const Variant& value);  // halves to even
double ToDouble(const Variant& value);
Currency ToCurrency(const Variant& value);
Date ToDate(const Variant& value);

}  // namespace tsv
