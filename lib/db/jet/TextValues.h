#pragma once

#include <string>
#include <string_view>

#include "types/Variant.h"

// Values as texts in Jet SQL: numbers have a decimal point whatever the client's language (so CStr(1.125) is "1.125"
// and CDbl of that is 1.125 again), True is -1, dates are in the Brazilian form, and a time of the epoch's
// day stands alone.
namespace tsv::db::jet {

std::string TextOf(const Variant& value);  // Null raises 94; Empty gives the empty text

// What a text says. A lone point begins the decimals, other numbers are read as ReadNumber does, and an exponent is
// taken. A text of another kind raises 13, a number out of range 6.
bool ParseBoolean(std::string_view text);
std::int32_t ParseLong(std::string_view text);  // halves to even
double ParseDouble(std::string_view text);
Currency ParseCurrency(std::string_view text);
Date ParseDate(std::string_view text);  // a date's text, or a number of days

bool IsNumberText(std::string_view text);

}  // namespace tsv::db::jet
