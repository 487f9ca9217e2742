#include "db/jet/Calendar.h"

#include <array>

#include "types/Erro.h"
#include "types/Text.h"

namespace tsv::db::jet {
namespace {

constexpr std::int32_t kDaysOfWeek = 7;

}  // namespace

std::int32_t WeekdayOf(Date date, std::int32_t firstDay) {
  if (firstDay < 0 || firstDay > kDaysOfWeek) Raise(RuntimeError::InvalidArgument);
  if (firstDay == 0) firstDay = 1;
  constexpr std::int32_t epoch = 7;  // a Saturday
  const std::int32_t days = (date.DayNumber() + epoch - firstDay) % kDaysOfWeek;
  return (days + kDaysOfWeek) % kDaysOfWeek + 1;
}

std::int32_t WeekOf(Date date, std::int32_t firstDay, std::int32_t firstWeek) {
  if (firstWeek < 0 || firstWeek > 3) Raise(RuntimeError::InvalidArgument);
  const std::int32_t day = date.DayNumber();
  const int year = date.ToCivil().year;
  // The day on which the first week of the year after, of this year, or of the year before begins.
  for (const int candidate : {year + 1, year, year - 1}) {
    if (!IsCalendarDay(candidate, 1, 1)) continue;
    const Date newYear = Date::FromCivil(candidate, 1, 1);
    const std::int32_t daysBefore = WeekdayOf(newYear, firstDay) - 1;
    const bool begins = firstWeek <= 1 || (firstWeek == 2 ? daysBefore <= 3 : daysBefore == 0);
    const std::int32_t first = newYear.DayNumber() - daysBefore + (begins ? 0 : kDaysOfWeek);
    if (candidate > year && firstWeek <= 1) continue;  // there December keeps its days
    if (day >= first) return (day - first) / kDaysOfWeek + 1;
  }
  return 1;
}

std::int32_t DayOfYear(Date date) {
  return date.DayNumber() - Date::FromCivil(date.ToCivil().year, 1, 1).DayNumber() + 1;
}

std::string_view MonthNameOf(std::int32_t month) {
  constexpr std::array<std::string_view, 12> names{"janeiro",  "fevereiro", "março",    "abril",
                                                   "maio",     "junho",     "julho",    "agosto",
                                                   "setembro", "outubro",   "novembro", "dezembro"};
  if (month < 1 || month > 12) Raise(RuntimeError::InvalidArgument);
  return names[static_cast<std::size_t>(month - 1)];
}

std::string_view WeekdayNameOf(std::int32_t weekday) {
  constexpr std::array<std::string_view, 7> names{"domingo",      "segunda-feira", "terça-feira", "quarta-feira",
                                                  "quinta-feira", "sexta-feira",   "sábado"};
  if (weekday < 1 || weekday > kDaysOfWeek) Raise(RuntimeError::InvalidArgument);
  return names[static_cast<std::size_t>(weekday - 1)];
}

std::string_view Abbreviated(std::string_view name) {
  std::size_t offset = 0;
  for (int letters = 0; letters < 3; ++letters) text::NextCodePoint(name, offset);
  return name.substr(0, offset);
}

}  // namespace tsv::db::jet
