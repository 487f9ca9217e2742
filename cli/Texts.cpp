#include "Texts.h"

#include <algorithm>

#include "types/Conversions.h"

namespace tsv::cli {
namespace {

std::string Grouped(std::string digits) {
  const std::size_t first = digits[0] == '-' ? 1 : 0;
  for (std::size_t at = digits.size(); at > first + 3;) {
    at -= 3;
    digits.insert(at, ".");
  }
  return digits;
}

}  // namespace

std::string PlainAmount(Currency value) {
  std::string text = value.ToText();
  const std::size_t point = text.find('.');
  if (point == std::string::npos) return text + ".00";
  if (text.size() - point == 2) text += '0';
  return text;
}

std::string Amount(Currency value) {
  const std::string plain = PlainAmount(value);
  const std::size_t point = plain.find('.');
  return Grouped(plain.substr(0, point)) + "," + plain.substr(point + 1);
}

std::string Day(Date date) { return date.ToBrazilian().substr(0, 10); }

std::string IsoMoment(Date date) {
  std::string text = date.ToIso();
  if (text.ends_with("00:00:00")) return text.substr(0, 10);
  text[10] = 'T';
  return text;
}

std::string Count(std::int64_t number) { return Grouped(std::to_string(number)); }

std::string Count(std::int64_t number, const char* one, const char* many) {
  return Count(number) + " " + (number == 1 ? one : many);
}

std::string Shown(const Variant& value) {
  if (IsNull(value)) return {};
  if (const auto* amount = std::get_if<Currency>(&value)) return Amount(*amount);
  if (const auto* date = std::get_if<Date>(&value)) return date->ToBrazilian();
  if (const auto* truth = std::get_if<bool>(&value)) return *truth ? "Sim" : "Não";
  return ToText(value);
}

std::string OneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace tsv::cli
