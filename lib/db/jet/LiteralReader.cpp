#include "db/jet/LiteralReader.h"

#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "db/EngineError.h"
#include "db/jet/Characters.h"
#include "db/jet/DateLiteral.h"
#include "db/jet/Keywords.h"

namespace tsv::db::jet {
namespace {

bool DigitAt(std::string_view sql, std::size_t at) { return at < sql.size() && IsDigit(sql[at]); }

bool NumberAt(std::string_view sql, std::size_t at) {
  return DigitAt(sql, at) || (at < sql.size() && sql[at] == '.' && DigitAt(sql, at + 1));
}

std::size_t AfterBlanks(std::string_view sql, std::size_t at) {
  while (at < sql.size() && IsBlank(sql[at])) ++at;
  return at;
}

std::size_t AfterDigits(std::string_view sql, std::size_t at) {
  while (DigitAt(sql, at)) ++at;
  return at;
}

std::size_t AfterNumber(std::string_view sql, std::size_t at) {
  at = AfterDigits(sql, at);
  if (at < sql.size() && sql[at] == '.') at = AfterDigits(sql, at + 1);
  if (at < sql.size() && (sql[at] == 'e' || sql[at] == 'E')) {
    std::size_t exponent = at + 1;
    if (exponent < sql.size() && (sql[exponent] == '+' || sql[exponent] == '-')) ++exponent;
    if (DigitAt(sql, exponent)) at = AfterDigits(sql, exponent);
  }
  return at;
}

bool BeginsKeyword(std::string_view rest) {
  std::size_t length = 0;
  while (length < rest.size() && IsNamePart(rest[length])) ++length;
  return IsReserved(rest.substr(0, length));
}

// The number in ten-thousandths when it has no exponent, at most four decimals and lies in currency's range.
std::optional<std::int64_t> ExactUnits(std::string_view digits, bool negative) {
  std::string_view whole = digits.substr(0, digits.find('.'));
  std::string_view decimals = whole.size() < digits.size() ? digits.substr(whole.size() + 1) : std::string_view{};
  while (!decimals.empty() && decimals.back() == '0') decimals.remove_suffix(1);
  while (!whole.empty() && whole.front() == '0') whole.remove_prefix(1);
  if (decimals.size() > 4 || whole.size() > 15) return std::nullopt;
  std::uint64_t units = 0;
  for (const std::string_view part : {whole, decimals}) {
    for (const char c : part) {
      if (!IsDigit(c)) return std::nullopt;
      units = units * 10 + static_cast<std::uint64_t>(c - '0');
    }
  }
  for (std::size_t i = decimals.size(); i < 4; ++i) units *= 10;
  constexpr auto kLargest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (units > kLargest + (negative ? 1 : 0)) return std::nullopt;
  return static_cast<std::int64_t>(negative ? 0 - units : units);
}

LiteralKind Text(std::string_view sql, std::size_t& at, std::vector<Variant>& literals) {
  const char quote = sql[at];
  std::string value;
  for (std::size_t begin = at + 1;;) {
    const std::size_t end = sql.find(quote, begin);
    if (end == std::string_view::npos) Raise(EngineError::SyntaxInExpression, "texto sem as aspas que o encerram");
    value.append(sql, begin, end - begin);
    begin = end + 1;
    if (begin >= sql.size() || sql[begin] != quote) {
      at = begin;
      literals.emplace_back(std::move(value));
      return LiteralKind::Text;
    }
    value += quote;
    ++begin;
  }
}

LiteralKind DateBetweenSigns(std::string_view sql, std::size_t& at, std::vector<Variant>& literals) {
  const std::size_t end = sql.find('#', at + 1);
  if (end == std::string_view::npos) Raise(EngineError::SyntaxInExpression, "data sem o sinal # que a encerra");
  const auto date = ReadDateLiteral(sql.substr(at + 1, end - at - 1));
  if (!date) Raise(EngineError::SyntaxInExpression, "data inválida entre sinais #");
  at = end + 1;
  literals.emplace_back(*date);
  return LiteralKind::Date;
}

LiteralKind Number(std::string_view sql, std::size_t begin, bool negative, std::size_t& at,
                   std::vector<Variant>& literals) {
  const std::size_t end = AfterNumber(sql, begin);
  const std::string_view digits = sql.substr(begin, end - begin);
  if (end < sql.size() && IsNameStart(sql[end]) && !BeginsKeyword(sql.substr(end))) {
    Raise(EngineError::SyntaxInExpression, "letras logo após um número");
  }
  if (const auto units = ExactUnits(digits, negative)) {
    at = end;
    const std::int64_t whole = *units / Currency::kScale;
    if (digits.find('.') == std::string_view::npos && whole >= std::numeric_limits<std::int32_t>::min() &&
        whole <= std::numeric_limits<std::int32_t>::max()) {
      literals.emplace_back(static_cast<std::int32_t>(whole));
      return LiteralKind::Long;
    }
    literals.emplace_back(Currency::FromTenThousandths(*units));
    return LiteralKind::Currency;
  }
  double value = 0;
  const auto [last, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  const bool tiny = digits.find("e-") != std::string_view::npos || digits.find("E-") != std::string_view::npos;
  if (error == std::errc::result_out_of_range && !tiny) tsv::Raise(RuntimeError::Overflow);
  at = end;
  literals.emplace_back(negative ? -value : value);
  return LiteralKind::Double;
}

bool IsBase(std::string_view sql, std::size_t number) {
  const std::size_t after = AfterBlanks(sql, AfterNumber(sql, number));
  return after < sql.size() && sql[after] == '^';
}

LiteralKind SignedNumber(std::string_view sql, std::size_t& at, Before before, std::vector<Variant>& literals) {
  const std::size_t number = AfterBlanks(sql, at + 1);
  // A power binds tighter than the sign before it, so such a number keeps its sign apart.
  if (before.operand || !NumberAt(sql, number) || IsBase(sql, number)) return LiteralKind::None;
  return Number(sql, number, true, at, literals);
}

LiteralKind PlainNumber(std::string_view sql, std::size_t& at, Before before, std::vector<Variant>& literals) {
  const bool inName = sql[at] == '.' ? before.name : at > 0 && (IsNamePart(sql[at - 1]) || sql[at - 1] == '.');
  if (inName || !NumberAt(sql, at) || (before.sign && !IsBase(sql, at))) return LiteralKind::None;
  return Number(sql, at, false, at, literals);
}

}  // namespace

LiteralKind ReadLiteral(std::string_view sql, std::size_t& at, Before before, std::vector<Variant>& literals) {
  switch (sql[at]) {
    case '\'':
    case '"':
      return Text(sql, at, literals);
    case '#':
      return DateBetweenSigns(sql, at, literals);
    case '-':
      return SignedNumber(sql, at, before, literals);
    default:
      return PlainNumber(sql, at, before, literals);
  }
}

}  // namespace tsv::db::jet
