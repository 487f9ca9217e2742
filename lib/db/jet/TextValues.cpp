#include "db/jet/TextValues.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "types/Conversions.h"
#include "types/Erro.h"
#include "types/NumberText.h"
#include "types/Text.h"

namespace tsv::db::jet {
namespace {

std::optional<double> WithExponent(std::string_view text) {
  text = text::Trim(text);
  if (!text.empty() && text[0] == '+') text.remove_prefix(1);
  const std::size_t digit = text.find_first_of("0123456789");
  if (digit == std::string_view::npos || digit > text.find_first_of("eE")) return std::nullopt;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end != text.data() + text.size() || error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range) {
    if (text.find('-', digit) == std::string_view::npos) Raise(RuntimeError::Overflow);
    return 0;
  }
  return value;
}

// The text in the form that the conversions of values read as meant here.
Variant Readable(std::string_view text) {
  std::string readable(text);
  const std::size_t point = readable.find('.');
  if (point != std::string::npos && readable.find_first_of(".,", point + 1) == std::string::npos &&
      readable.find(',') == std::string::npos) {
    readable[point] = ',';
  }
  if (!ReadNumber(readable)) {
    if (const auto value = WithExponent(text)) return *value;
  }
  return readable;
}

}  // namespace

std::string TextOf(const Variant& value) {
  if (const auto* condition = std::get_if<bool>(&value)) return *condition ? "-1" : "0";
  if (const auto* amount = std::get_if<Currency>(&value)) return amount->ToText();
  std::string text = ToText(value);
  if (const auto* date = std::get_if<Date>(&value); date && date->DayNumber() == 0 && date->SecondOfDay() != 0) {
    return text.substr(text.find(' ') + 1);
  }
  if (std::holds_alternative<double>(value)) std::replace(text.begin(), text.end(), ',', '.');
  return text;
}

bool ParseBoolean(std::string_view text) { return ToBoolean(Readable(text)); }
std::int32_t ParseLong(std::string_view text) { return ToLong(Readable(text)); }
double ParseDouble(std::string_view text) { return ToDouble(Readable(text)); }
Currency ParseCurrency(std::string_view text) { return ToCurrency(Readable(text)); }

Date ParseDate(std::string_view text) {
  if (const auto date = Date::FromText(text)) return *date;
  return ToDate(Readable(text));
}

bool IsNumberText(std::string_view text) { return IsNumeric(Readable(text)); }

}  // namespace tsv::db::jet
