#include <algorithm>
#include <array>

#include "db/jet/Calendar.h"
#include "db/jet/Format.h"
#include "db/jet/Keywords.h"
#include "db/jet/TextValues.h"

namespace tsv::db::jet {
namespace {

constexpr std::string_view kShortDate = "dd/mm/yyyy";
constexpr std::string_view kLongDate = "dddd, d \"de\" mmmm \"de\" yyyy";
constexpr std::size_t kDigits = 2;  // the most that parts of the day have
constexpr std::string_view kLongTime = "hh:nn:ss";

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

class DateWriter {
 public:
  DateWriter(Date date, std::int32_t firstDay, std::int32_t firstWeek)
      : date_(date), civil_(date.ToCivil()), firstDay_(firstDay), firstWeek_(firstWeek) {}

  std::string Write(std::string_view pattern) {
    WriteAll(pattern);
    if (hasHalves_) {
      text_.clear();
      countsToTwelve_ = true;
      WriteAll(pattern);
    }
    return std::move(text_);
  }

 private:
  void WriteAll(std::string_view pattern) {
    bool afterHour = false;
    for (std::size_t at = 0; at < pattern.size();) {
      const char letter = Lower(pattern[at]);
      if (letter == '"' || letter == '\\') {
        text_ += QuotedPart(pattern, at);
      } else if (letter == 'a' && WriteHalf(pattern, at)) {
        afterHour = false;
      } else {
        std::size_t count = 1;
        while (at + count < pattern.size() && Lower(pattern[at + count]) == letter) ++count;
        const bool isPart = WritePart(letter == 'm' && afterHour ? 'n' : letter, count);
        if (isPart) {
          afterHour = letter == 'h';
        } else {
          text_.append(pattern, at, count);
        }
        at += count;
      }
    }
  }

  // AM/PM, A/P and AMPM, in the pattern's case.
  bool WriteHalf(std::string_view pattern, std::size_t& at) {
    constexpr std::array<std::string_view, 3> forms{"AM/PM", "A/P", "AMPM"};
    for (const std::string_view form : forms) {
      const std::string_view found = pattern.substr(at, form.size());
      if (!SameWord(found, form)) continue;
      const std::size_t width = form == "A/P" ? 1 : 2;
      text_ += civil_.hour < 12 ? found.substr(0, width) : found.substr(found.size() - width);
      at += form.size();
      hasHalves_ = true;
      return true;
    }
    return false;
  }

  // Whether the run of letters stands for a part of the date; it is written then.
  bool WritePart(char letter, std::size_t count) {
    switch (letter) {
      case 'c':
        text_ += TextOf(date_);
        return true;
      case 'd':
        WriteDay(count);
        return true;
      case 'm':
        WriteMonth(count);
        return true;
      case 'y':
        if (count == 1) WriteNumber(DayOfYear(date_), 1);
        if (count == 2) WriteNumber(civil_.year % 100, 2);
        if (count > 2) WriteNumber(civil_.year, 4);
        return true;
      case 'q':
        WriteNumber((civil_.month + 2) / 3, 1);
        return true;
      case 'w':
        WriteNumber(count == 1 ? WeekdayOf(date_, firstDay_) : WeekOf(date_, firstDay_, firstWeek_), 1);
        return true;
      case 'h':
        WriteNumber(countsToTwelve_ ? (civil_.hour + 11) % 12 + 1 : civil_.hour, std::min(count, kDigits));
        return true;
      case 'n':
        WriteNumber(civil_.minute, std::min(count, kDigits));
        return true;
      case 's':
        WriteNumber(civil_.second, std::min(count, kDigits));
        return true;
      case 't':
        if (count == 5) WriteAll(kLongTime);
        return count == 5;
      default:
        return false;
    }
  }

  void WriteDay(std::size_t count) {
    if (count <= 2) return WriteNumber(civil_.day, count);
    if (count >= 5) return WriteAll(count == 5 ? kShortDate : kLongDate);
    const std::string_view name = WeekdayNameOf(WeekdayOf(date_, 1));
    text_ += count == 3 ? Abbreviated(name) : name;
  }

  void WriteMonth(std::size_t count) {
    if (count <= 2) return WriteNumber(civil_.month, count);
    const std::string_view name = MonthNameOf(civil_.month);
    text_ += count == 3 ? Abbreviated(name) : name;
  }

  void WriteNumber(int value, std::size_t width) {
    const std::string digits = std::to_string(value);
    text_.append(width - std::min(width, digits.size()), '0').append(digits);
  }

  Date date_;
  CivilTime civil_;
  std::int32_t firstDay_;
  std::int32_t firstWeek_;
  bool hasHalves_ = false;
  bool countsToTwelve_ = false;
  std::string text_;
};

}  // namespace

std::string FormatDate(Date date, std::string_view pattern, std::int32_t firstDay, std::int32_t firstWeek) {
  return DateWriter(date, firstDay, firstWeek).Write(pattern);
}

}  // namespace tsv::db::jet
