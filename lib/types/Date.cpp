#include "types/Date.h"

#include <array>
#include <cmath>
#include <ctime>

#include "types/Erro.h"
#include "types/Text.h"

namespace tsv {
namespace {

constexpr int kSecondsPerDay = 86'400;
constexpr std::int32_t kFirstDay = -657'434;  // 0100-01-01
constexpr std::int32_t kLastDay = 2'958'465;  // 9999-12-31

constexpr int kEpoch = 693'899;  // 1899-12-30, in days since the March that year 0 begins with

// Days since the epoch, counting years from March so that the leap day is a year's last.
std::int32_t DayOf(int year, int month, int day) {
  const int marchYear = month <= 2 ? year - 1 : year;
  const int marchMonth = (month + 9) % 12;
  const int beforeYear = marchYear * 365 + marchYear / 4 - marchYear / 100 + marchYear / 400;
  return beforeYear + (marchMonth * 306 + 5) / 10 + day - 1 - kEpoch;
}

struct Moment {
  std::int32_t day = 0;
  int second = 0;
};

Moment Split(double days) {
  if (!(days > kFirstDay - 1.0 && days < kLastDay + 1.0)) Raise(RuntimeError::InvalidArgument);
  const double whole = std::trunc(days);
  Moment moment{static_cast<std::int32_t>(whole),
                static_cast<int>(std::lround(std::fabs(days - whole) * kSecondsPerDay))};
  if (moment.second == kSecondsPerDay) moment = {moment.day + 1, 0};
  if (moment.day > kLastDay) Raise(RuntimeError::InvalidArgument);
  return moment;
}

void AppendTime(std::string& text, const CivilTime& civil) {
  AppendDigits(text, civil.hour, 2);
  text += ':';
  AppendDigits(text, civil.minute, 2);
  text += ':';
  AppendDigits(text, civil.second, 2);
}

// Reads a date's text from left to right.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  bool AtEnd() const { return at_ == text_.size(); }

  bool Skip(char expected) {
    if (AtEnd() || text_[at_] != expected) return false;
    ++at_;
    return true;
  }

  // One run of at most four digits; how many there were is the result, 0 for none or too many.
  int Number(int& value) {
    int count = 0;
    for (value = 0; !AtEnd() && text_[at_] >= '0' && text_[at_] <= '9'; ++at_, ++count) {
      if (count == 4) return 0;
      value = value * 10 + (text_[at_] - '0');
    }
    return count;
  }

  bool TwoDigits(int& value) { return Number(value) == 2; }

 private:
  std::string_view text_;
  std::size_t at_ = 0;
};

// The rest of hh:mm[:ss] after its hour.
bool ReadAfterHour(Scanner& scanner, CivilTime& civil) {
  if (!scanner.Skip(':') || !scanner.TwoDigits(civil.minute)) return false;
  if (scanner.Skip(':') && !scanner.TwoDigits(civil.second)) return false;
  return scanner.AtEnd() && civil.hour < 24 && civil.minute < 60 && civil.second < 60;
}

bool ReadTime(Scanner& scanner, CivilTime& civil) {
  const int digits = scanner.Number(civil.hour);
  return (digits == 1 || digits == 2) && ReadAfterHour(scanner, civil);
}

}  // namespace

Date Date::FromCivil(const CivilTime& civil) {
  const bool isTime = civil.hour >= 0 && civil.hour < 24 && civil.minute >= 0 && civil.minute < 60 &&
                      civil.second >= 0 && civil.second < 60;
  if (!isTime || !IsCalendarDay(civil.year, civil.month, civil.day)) Raise(RuntimeError::InvalidArgument);
  return FromDay(DayOf(civil.year, civil.month, civil.day), civil.hour * 3600 + civil.minute * 60 + civil.second);
}

Date Date::FromDay(std::int64_t day, int second) {
  if (day < kFirstDay || day > kLastDay) Raise(RuntimeError::InvalidArgument);
  const double time = static_cast<double>(second) / kSecondsPerDay;
  return Date(static_cast<double>(day) + (day < 0 ? -time : time));
}

Date Date::Now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &now);
#else
  localtime_r(&now, &local);
#endif
  const int second = local.tm_sec < 60 ? local.tm_sec : 59;  // a leap second has no place in the calendar
  return FromCivil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, second});
}

std::optional<Date> Date::FromText(std::string_view text) {
  Scanner scanner(text::Trim(text));
  CivilTime civil;
  int first = 0;
  const int firstDigits = scanner.Number(first);
  bool iso = false;
  if (firstDigits == 1 || firstDigits == 2) {
    if (!scanner.Skip('/')) {
      civil.hour = first;
      return ReadAfterHour(scanner, civil) ? std::optional(FromCivil(civil)) : std::nullopt;
    }
    civil.day = first;
    const int monthDigits = scanner.Number(civil.month);
    if (monthDigits < 1 || monthDigits > 2 || !scanner.Skip('/')) return std::nullopt;
    const int yearDigits = scanner.Number(civil.year);
    if (yearDigits == 2) civil.year += civil.year < 30 ? 2000 : 1900;
    if (yearDigits != 2 && yearDigits != 4) return std::nullopt;
  } else {
    iso = true;
    civil.year = first;
    if (firstDigits != 4 || !scanner.Skip('-') || !scanner.TwoDigits(civil.month) || !scanner.Skip('-') ||
        !scanner.TwoDigits(civil.day)) {
      return std::nullopt;
    }
  }
  if (!IsCalendarDay(civil.year, civil.month, civil.day)) return std::nullopt;
  if (!scanner.AtEnd()) {
    if (!(iso && scanner.Skip('T'))) {
      if (!scanner.Skip(' ')) return std::nullopt;
      while (scanner.Skip(' ')) {
      }
    }
    if (!ReadTime(scanner, civil)) return std::nullopt;
  }
  return FromCivil(civil);
}

CivilTime Date::ToCivil() const {
  const Moment moment = Split(days_);
  // A first guess from the mean length of a year is at most one day's year off.
  int marchYear = static_cast<int>(std::floor((moment.day + kEpoch) / 365.2425));
  if (DayOf(marchYear, 3, 1) > moment.day) --marchYear;
  if (DayOf(marchYear + 1, 3, 1) <= moment.day) ++marchYear;
  const int dayOfYear = moment.day - DayOf(marchYear, 3, 1);
  const int marchMonth = (dayOfYear * 5 + 2) / 153;
  const int day = dayOfYear - (marchMonth * 306 + 5) / 10 + 1;
  const int month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
  const int year = month <= 2 ? marchYear + 1 : marchYear;
  return {year, month, day, moment.second / 3600, moment.second / 60 % 60, moment.second % 60};
}

std::int32_t Date::DayNumber() const { return Split(days_).day; }

int Date::SecondOfDay() const { return Split(days_).second; }

std::string Date::ToIso() const {
  const CivilTime civil = ToCivil();
  std::string text;
  AppendDigits(text, civil.year, 4);
  text += '-';
  AppendDigits(text, civil.month, 2);
  text += '-';
  AppendDigits(text, civil.day, 2);
  text += ' ';
  AppendTime(text, civil);
  return text;
}

std::string Date::ToBrazilian() const {
  const CivilTime civil = ToCivil();
  std::string text;
  AppendDigits(text, civil.day, 2);
  text += '/';
  AppendDigits(text, civil.month, 2);
  text += '/';
  AppendDigits(text, civil.year, 4);
  if (civil.hour != 0 || civil.minute != 0 || civil.second != 0) {
    text += ' ';
    AppendTime(text, civil);
  }
  return text;
}

void AppendDigits(std::string& text, int number, int count) {
  int place = 1;
  while (--count > 0) place *= 10;
  for (; place > 0; place /= 10) text += static_cast<char>('0' + number / place % 10);
}

bool IsCalendarDay(int year, int month, int day) noexcept {
  return year >= 100 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 && day <= DaysInMonth(year, month);
}

int DaysInMonth(int year, int month) noexcept {
  constexpr std::array<int, 12> days{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return days[static_cast<std::size_t>(month - 1)] + (month == 2 && leap ? 1 : 0);
}

}  // namespace tsv
