#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "types/Date.h"
#include "types/NumberText.h"

// The patterns of Format. Quoted text and a character behind a backslash stand for themselves in both kinds.
namespace tsv::db::jet {

// 0 a digit, # a digit unless it is a zero at the edge, a point, commas for groups of thousands (or, at the end of the
// integer part, each for a division by 1000), % for a hundredth, E+00 for an exponent. Sections behind semicolons are
// for negative numbers and for zero. Halves round away from zero.
std::string FormatNumber(const NumberText& number, std::string_view pattern);

// d m y h n s in their lengths, q, w, ww, c, ttttt and AM/PM; m behind an hour is minutes, as n is.
std::string FormatDate(Date date, std::string_view pattern, std::int32_t firstDay, std::int32_t firstWeek);

// The character that a pattern holds at offset behind a backslash or in quotes; offset moves past it.
std::string_view QuotedPart(std::string_view pattern, std::size_t& offset);

}  // namespace tsv::db::jet
