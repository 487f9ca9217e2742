#include <algorithm>
#include <limits>

#include "db/jet/Calendar.h"
#include "db/jet/FunctionTables.h"
#include "db/jet/Keywords.h"

namespace tsv::db::jet {
namespace {

constexpr std::int64_t kSecondsPerDay = 86'400;

enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Interval IntervalAt(Arguments arguments, std::size_t place) {
  constexpr std::pair<std::string_view, Interval> names[] = {
      {"yyyy", Interval::Year}, {"q", Interval::Quarter}, {"m", Interval::Month}, {"y", Interval::DayOfYear},
      {"d", Interval::Day},     {"w", Interval::Weekday}, {"ww", Interval::Week}, {"h", Interval::Hour},
      {"n", Interval::Minute},  {"s", Interval::Second},
  };
  for (const auto& [name, interval] : names) {
    if (SameWord(name, TextAt(arguments, place))) return interval;
  }
  Raise(RuntimeError::InvalidArgument);
}

Date DateAt(Arguments arguments, std::size_t place) { return ToDate(arguments[place]); }
CivilTime CivilAt(Arguments arguments, std::size_t place) { return DateAt(arguments, place).ToCivil(); }

std::int64_t FloorDivide(std::int64_t value, std::int64_t divisor) {
  return value / divisor - (value % divisor < 0 ? 1 : 0);
}

std::int64_t SecondsOf(Date date) { return date.DayNumber() * kSecondsPerDay + date.SecondOfDay(); }

Date FromSeconds(std::int64_t seconds) {
  const std::int64_t day = FloorDivide(seconds, kSecondsPerDay);
  return Date::FromDay(day, static_cast<int>(seconds - day * kSecondsPerDay));
}

// Months counted from year 0, so that they can be added and subtracted.
std::int64_t MonthsOf(const CivilTime& civil) { return std::int64_t{12} * civil.year + civil.month - 1; }

// The civil time in the month of that count; a day that the month does not have becomes its last.
Date InMonth(CivilTime civil, std::int64_t months) {
  Require(months >= 100 * 12 && months < 10'000 * 12);
  civil.year = static_cast<int>(months / 12);
  civil.month = static_cast<int>(months % 12) + 1;
  civil.day = std::min(civil.day, DaysInMonth(civil.year, civil.month));
  return Date::FromCivil(civil);
}

Variant Year(Arguments a) { return CivilAt(a, 0).year; }
Variant Month(Arguments a) { return CivilAt(a, 0).month; }
Variant Day(Arguments a) { return CivilAt(a, 0).day; }
Variant Hour(Arguments a) { return CivilAt(a, 0).hour; }
Variant Minute(Arguments a) { return CivilAt(a, 0).minute; }
Variant Second(Arguments a) { return CivilAt(a, 0).second; }
Variant Weekday(Arguments a) { return WeekdayOf(DateAt(a, 0), LongAt(a, 1)); }

// Months and days outside their range carry over; a year of two digits lies between 1930 and 2029.
Variant DateSerial(Arguments a) {
  std::int64_t year = LongAt(a, 0);
  if (year >= 0 && year < 100) year += year < 30 ? 2000 : 1900;
  CivilTime first;
  first.day = 1;
  const Date month = InMonth(first, year * 12 + LongAt(a, 1) - 1);
  return Date::FromDay(month.DayNumber() + std::int64_t{LongAt(a, 2)} - 1);
}

Variant TimeSerial(Arguments a) {
  return FromSeconds(std::int64_t{3600} * LongAt(a, 0) + std::int64_t{60} * LongAt(a, 1) + LongAt(a, 2));
}

Variant DateAdd(Arguments a) {
  const Interval interval = IntervalAt(a, 0);
  const std::int64_t count = LongAt(a, 1);
  const Date date = DateAt(a, 2);
  const auto addMonths = [&](std::int64_t months) {
    return InMonth(date.ToCivil(), MonthsOf(date.ToCivil()) + months);
  };
  const auto addSeconds = [&](std::int64_t seconds) { return FromSeconds(SecondsOf(date) + seconds); };
  switch (interval) {
    case Interval::Year:
      return addMonths(12 * count);
    case Interval::Quarter:
      return addMonths(3 * count);
    case Interval::Month:
      return addMonths(count);
    case Interval::DayOfYear:
    case Interval::Day:
    case Interval::Weekday:
      return addSeconds(kSecondsPerDay * count);
    case Interval::Week:
      return addSeconds(7 * kSecondsPerDay * count);
    case Interval::Hour:
      return addSeconds(3600 * count);
    case Interval::Minute:
      return addSeconds(60 * count);
    case Interval::Second:
      break;
  }
  return addSeconds(count);
}

// The boundaries crossed between two dates: one second can be a year's difference.
std::int64_t Difference(Interval interval, Date from, Date to, std::int32_t firstDay) {
  const std::int64_t days = std::int64_t{to.DayNumber()} - from.DayNumber();
  const std::int64_t months = MonthsOf(to.ToCivil()) - MonthsOf(from.ToCivil());
  const auto units = [&](std::int64_t seconds) {
    return FloorDivide(SecondsOf(to), seconds) - FloorDivide(SecondsOf(from), seconds);
  };
  switch (interval) {
    case Interval::Year:
      return to.ToCivil().year - from.ToCivil().year;
    case Interval::Quarter:
      return MonthsOf(to.ToCivil()) / 3 - MonthsOf(from.ToCivil()) / 3;
    case Interval::Month:
      return months;
    case Interval::DayOfYear:
    case Interval::Day:
      return days;
    case Interval::Weekday:
      return days / 7;
    case Interval::Week:
      return (days - WeekdayOf(to, firstDay) + WeekdayOf(from, firstDay)) / 7;
    case Interval::Hour:
      return units(3600);
    case Interval::Minute:
      return units(60);
    case Interval::Second:
      break;
  }
  return units(1);
}

Variant DateDiff(Arguments a) {
  const std::int64_t difference = Difference(IntervalAt(a, 0), DateAt(a, 1), DateAt(a, 2), LongAt(a, 3));
  using Limits = std::numeric_limits<std::int32_t>;
  if (difference < Limits::min() || difference > Limits::max()) Raise(RuntimeError::Overflow);
  return static_cast<std::int32_t>(difference);
}

Variant DatePart(Arguments a) {
  const Date date = DateAt(a, 1);
  const CivilTime civil = date.ToCivil();
  switch (IntervalAt(a, 0)) {
    case Interval::Year:
      return civil.year;
    case Interval::Quarter:
      return (civil.month + 2) / 3;
    case Interval::Month:
      return civil.month;
    case Interval::DayOfYear:
      return DayOfYear(date);
    case Interval::Day:
      return civil.day;
    case Interval::Weekday:
      return WeekdayOf(date, LongAt(a, 2));
    case Interval::Week:
      return WeekOf(date, LongAt(a, 2), LongAt(a, 3));
    case Interval::Hour:
      return civil.hour;
    case Interval::Minute:
      return civil.minute;
    case Interval::Second:
      break;
  }
  return civil.second;
}

Variant DateValue(Arguments a) { return Date::FromDay(DateAt(a, 0).DayNumber()); }
Variant TimeValue(Arguments a) { return Date::FromDay(0, DateAt(a, 0).SecondOfDay()); }

bool IsAbbreviated(Arguments arguments) { return arguments.size() > 1 && ToBoolean(arguments[1]); }

Variant MonthName(Arguments a) {
  const std::string_view name = MonthNameOf(LongAt(a, 0));
  return std::string(IsAbbreviated(a) ? Abbreviated(name) : name);
}

Variant WeekdayName(Arguments a) {
  const std::int32_t firstDay = LongAt(a, 2, 1);
  Require(LongAt(a, 0) >= 1 && LongAt(a, 0) <= 7 && firstDay >= 0 && firstDay <= 7);
  const std::string_view name = WeekdayNameOf((LongAt(a, 0) + std::max(firstDay, 1) - 2) % 7 + 1);
  return std::string(IsAbbreviated(a) ? Abbreviated(name) : name);
}

Variant NowValue(Arguments) { return Date::Now(); }
Variant Today(Arguments) { return Date::FromDay(Date::Now().DayNumber()); }
Variant TimeNow(Arguments) { return Date::FromDay(0, Date::Now().SecondOfDay()); }

Function PartOf(std::string_view name, Variant (*call)(Arguments)) {
  return {.name = name, .arguments = {ArgumentKind::Date}, .required = 1, .result = ValueType::Long, .call = call};
}

Function Clock(std::string_view name, Variant (*call)(Arguments)) {
  return {.name = name, .arguments = {}, .result = ValueType::Date, .constant = false, .call = call};
}

}  // namespace

std::vector<Function> DateFunctions() {
  using enum ArgumentKind;
  constexpr ValueType whole = ValueType::Long;
  constexpr ValueType date = ValueType::Date;
  constexpr ValueType text = ValueType::Text;
  using Kind = ArgumentKind;
  return {
      PartOf("Year", Year),
      PartOf("Month", Month),
      PartOf("Day", Day),
      PartOf("Hour", Hour),
      PartOf("Minute", Minute),
      PartOf("Second", Second),
      {.name = "Weekday", .arguments = {Kind::Date, Long}, .required = 1, .result = whole, .call = Weekday},
      {.name = "DateSerial", .arguments = {Long, Long, Long}, .required = 3, .result = date, .call = DateSerial},
      {.name = "TimeSerial", .arguments = {Long, Long, Long}, .required = 3, .result = date, .call = TimeSerial},
      {.name = "DateAdd", .arguments = {Text, Double, Kind::Date}, .required = 3, .result = date, .call = DateAdd},
      {.name = "DateDiff",
       .arguments = {Text, Kind::Date, Kind::Date, Long, Long},
       .required = 3,
       .result = whole,
       .call = DateDiff},
      {.name = "DatePart",
       .arguments = {Text, Kind::Date, Long, Long},
       .required = 2,
       .result = whole,
       .call = DatePart},
      {.name = "DateValue", .arguments = {Kind::Date}, .required = 1, .result = date, .call = DateValue},
      {.name = "TimeValue", .arguments = {Kind::Date}, .required = 1, .result = date, .call = TimeValue},
      {.name = "MonthName", .arguments = {Long, Boolean}, .required = 1, .result = text, .call = MonthName},
      {.name = "WeekdayName", .arguments = {Long, Boolean, Long}, .required = 1, .result = text, .call = WeekdayName},
      Clock("Now", NowValue),
      Clock("Date", Today),
      Clock("Time", TimeNow),
  };
}

}  // namespace tsv::db::jet
