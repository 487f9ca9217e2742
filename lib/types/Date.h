#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tsv {

struct CivilTime {
  int year = 1899;
  int month = 12;
  int day = 30;
  int hour = 0;
  int minute = 0;
  int second = 0;

  friend bool operator==(const CivilTime&, const CivilTime&) = default;
};

// An automation date: days since 1899-12-30 with the time of day as fraction, from year 100 to 9999.
// Before the epoch the fraction still runs forward in time: -1.25 is 1899-12-29 06:00.
class Date {
 public:
  constexpr Date() = default;  // the epoch, which the domain reads as "no date"
  constexpr explicit Date(double days) noexcept : days_(days) {}

  // Raises 5 when the parts name no moment of the calendar between the years 100 and 9999.
  static Date FromCivil(const CivilTime& civil);
  static Date FromCivil(int year, int month, int day) { return FromCivil({year, month, day, 0, 0, 0}); }

  // A day counted from the epoch and a second of it. Raises 5 outside the calendar.
  static Date FromDay(std::int64_t day, int second = 0);

  // The machine's local clock, to the second.
  static Date Now();

  // Brazilian dd/mm/aaaa and dd/mm/aa (00-29 is 2000-2029, 30-99 is 1930-1999) and ISO aaaa-mm-dd, each with an
  // optional hh:mm[:ss] after blanks (or a T in the ISO form); a time alone lies on the epoch. The result never depends
  // on the locale.
  static std::optional<Date> FromText(std::string_view text);

  constexpr double Days() const noexcept { return days_; }
  CivilTime ToCivil() const;  // rounded to the second; outside the calendar raises 5

  // The calendar day as a count of days since the epoch, so that differences count midnights.
  std::int32_t DayNumber() const;
  int SecondOfDay() const;

  std::string ToIso() const;        // "2008-07-05 09:08:07", always with the time
  std::string ToBrazilian() const;  // "05/07/2008", with " 09:08:07" unless it is midnight

  friend constexpr bool operator==(Date a, Date b) noexcept { return a.days_ == b.days_; }

 private:
  double days_ = 0;
};

// Writes the last digits of a part of a date, with zeros before it.
void AppendDigits(std::string& text, int number, int count);

// Whether the three numbers name a day of the Gregorian calendar between the years 100 and 9999.
bool IsCalendarDay(int year, int month, int day) noexcept;
int DaysInMonth(int year, int month) noexcept;

}  // namespace tsv
