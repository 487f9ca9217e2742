#include "db/jet/DateLiteral.h"

#include <algorithm>
#include <utility>

#include "db/jet/Keywords.h"
#include "types/Text.h"

namespace tsv::db::jet {
namespace {

class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  bool AtEnd() const { return rest_.empty(); }

  std::optional<int> Number(std::size_t mostDigits) {
    int value = 0;
    std::size_t digits = 0;
    while (digits < rest_.size() && digits < mostDigits && rest_[digits] >= '0' && rest_[digits] <= '9') {
      value = value * 10 + (rest_[digits++] - '0');
    }
    if (digits == 0) return std::nullopt;
    rest_.remove_prefix(digits);
    return value;
  }

  bool Take(char c) {
    if (rest_.empty() || rest_.front() != c) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool TakeWord(std::string_view word) {
    if (!SameWord(rest_.substr(0, word.size()), word)) return false;
    rest_.remove_prefix(word.size());
    return true;
  }

  void SkipBlanks() { rest_ = text::TrimLeft(rest_); }

 private:
  std::string_view rest_;
};

int FullYear(int year) { return year >= 100 ? year : year + (year < 30 ? 2000 : 1900); }

bool ReadDay(Reader& reader, int first, char separator, CivilTime& civil) {
  const auto second = reader.Number(2);
  if (!second || !reader.Take(separator)) return false;
  const auto third = reader.Number(4);
  if (!third) return false;
  if (first > 31) {
    civil.year = first;
    civil.month = *second;
    civil.day = *third;
  } else {
    civil.year = FullYear(*third);
    civil.month = first;
    civil.day = *second;
  }
  if (civil.month > 12) std::swap(civil.month, civil.day);
  return IsCalendarDay(civil.year, civil.month, civil.day);
}

bool ReadTime(Reader& reader, int hour, CivilTime& civil) {
  const auto minute = reader.Number(2);
  if (!minute) return false;
  int second = 0;
  if (reader.Take(':')) {
    const auto given = reader.Number(2);
    if (!given) return false;
    second = *given;
  }
  reader.SkipBlanks();
  const bool morning = reader.TakeWord("AM");
  const bool afternoon = !morning && reader.TakeWord("PM");
  if (morning || afternoon) {
    if (hour < 1 || hour > 12) return false;
    hour = hour % 12 + (afternoon ? 12 : 0);
  }
  if (hour > 23 || *minute > 59 || second > 59) return false;
  civil.hour = hour;
  civil.minute = *minute;
  civil.second = second;
  return true;
}

}  // namespace

std::optional<Date> ReadDateLiteral(std::string_view text) {
  Reader reader(text::Trim(text));
  CivilTime civil;
  const auto first = reader.Number(4);
  if (!first) return std::nullopt;
  if (reader.Take(':')) {
    if (!ReadTime(reader, *first, civil)) return std::nullopt;
  } else {
    const char separator = reader.Take('/') ? '/' : '-';
    if (separator == '-' && !reader.Take('-')) return std::nullopt;
    if (!ReadDay(reader, *first, separator, civil)) return std::nullopt;
    reader.SkipBlanks();
    if (!reader.AtEnd()) {
      const auto hour = reader.Number(2);
      if (!hour || !reader.Take(':') || !ReadTime(reader, *hour, civil)) return std::nullopt;
    }
  }
  if (!reader.AtEnd()) return std::nullopt;
  return Date::FromCivil(civil);
}

}  // namespace tsv::db::jet
