#pragma once

#include <cstdint>
#include <string_view>

#include "types/Date.h"

// Weeks and their days as dates are asked for them: a week begins on a day from 1 (Sunday) to 7 (Saturday), 0 for the
// usual Sunday.
namespace tsv::db::jet {

std::int32_t WeekdayOf(Date date, std::int32_t firstDay);  // 1 for the week's first day; a bad firstDay raises 5

// The week of its year. firstWeek: 1 (or 0) the one with 1 January, 2 the first with four days in the year, 3 the first
// with seven; the days before it belong to the last week of the year before. Another value raises 5.
std::int32_t WeekOf(Date date, std::int32_t firstDay, std::int32_t firstWeek);

std::int32_t DayOfYear(Date date);

std::string_view MonthNameOf(std::int32_t month);      // 1 is "janeiro"; outside the year raises 5
std::string_view WeekdayNameOf(std::int32_t weekday);  // 1 is "domingo"; outside the week raises 5

// The first three letters.
std::string_view Abbreviated(std::string_view name);

}  // namespace tsv::db::jet
