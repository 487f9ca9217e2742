#include "db/postgres/libpq/ServerValue.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

#include "db/EngineError.h"
#include "db/jet/TextValues.h"
#include "types/Conversions.h"

namespace tsv::db::postgres {
namespace {

// The server's own numbers for its types, which never change.
enum ServerType : Oid {
  kBoolean = 16,
  kBigInteger = 20,
  kSmallInteger = 21,
  kInteger = 23,
  kText = 25,
  kDouble = 701,
  kTimestamp = 1114,
  kNumeric = 1700,
};

constexpr std::int64_t kMicroseconds = 1'000'000;
constexpr std::int64_t kSecondsPerDay = 86'400;
constexpr std::int64_t kServerEpoch = 36'526;  // 2000-01-01, in days since 1899-12-30

std::string ShortestText(double value) {
  char text[32];
  return std::string(text, std::to_chars(text, text + sizeof text, value).ptr);
}

std::string TextValue(const Variant& value) {
  std::string text = std::holds_alternative<std::string>(value) ? std::get<std::string>(value) : jet::TextOf(value);
  if (text.find('\0') != std::string::npos) Raise(EngineError::ConversionError);
  return text;
}

std::uint64_t BigEndian(std::string_view bytes) {
  std::uint64_t value = 0;
  for (const char byte : bytes) value = value << 8 | static_cast<unsigned char>(byte);
  return value;
}

std::int16_t Short(std::string_view bytes, std::size_t place) {
  return static_cast<std::int16_t>(BigEndian(bytes.substr(place, 2)));
}

// Four decimal digits a group, of which the first counts 10000 to the power of the weight. What lies beyond the fourth
// decimal is rounded, halves to even.
Currency ReadNumeric(std::string_view bytes) {
  constexpr std::int16_t kNegative = 0x4000;
  constexpr std::size_t kHeader = 8;
  const std::int16_t groups = Short(bytes, 0);
  const std::int16_t weight = Short(bytes, 2);
  const std::int16_t sign = Short(bytes, 4);
  if (sign != 0 && sign != kNegative) Raise(RuntimeError::Overflow);  // no number, or infinite
  std::int64_t units = 0;
  bool above = false;  // a half, or more, was left out
  bool half = false;
  const auto take = [&](std::int64_t group) {
    // Downwards, where one more number fits.
    if (__builtin_mul_overflow(units, Currency::kScale, &units) || __builtin_sub_overflow(units, group, &units))
      Raise(RuntimeError::Overflow);
  };
  for (int i = 0; i <= weight + 1; ++i) take(i < groups ? Short(bytes, kHeader + 2 * static_cast<std::size_t>(i)) : 0);
  for (int i = weight + 2 < 0 ? 0 : weight + 2; i < groups; ++i) {
    const std::int16_t group = Short(bytes, kHeader + 2 * static_cast<std::size_t>(i));
    if (i == weight + 2) {
      above = group > 5000;
      half = group == 5000;
    } else if (half && group > 0) {
      above = true;
    }
  }
  if (above || (half && units % 2 != 0)) {
    if (__builtin_sub_overflow(units, 1, &units)) Raise(RuntimeError::Overflow);
  }
  if (sign == 0 && __builtin_sub_overflow(std::int64_t{0}, units, &units)) Raise(RuntimeError::Overflow);
  return Currency::FromTenThousandths(units);
}

Date ReadTimestamp(std::string_view bytes) {
  const auto microseconds = static_cast<std::int64_t>(BigEndian(bytes));
  if (microseconds == std::numeric_limits<std::int64_t>::max() ||
      microseconds == std::numeric_limits<std::int64_t>::min())
    Raise(EngineError::ConversionError);
  const auto floored = [](std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); };
  const std::int64_t seconds = floored(microseconds, kMicroseconds);
  const std::int64_t days = floored(seconds, kSecondsPerDay);
  return Date::FromDay(kServerEpoch + days, static_cast<int>(seconds - days * kSecondsPerDay));
}

Variant Whole(std::int64_t value) {
  if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
    Raise(RuntimeError::Overflow);
  return static_cast<std::int32_t>(value);
}

Variant OwnValue(std::string_view bytes, Oid type) {
  switch (type) {
    case kBoolean:
      return bytes != std::string_view("\0", 1);
    case kSmallInteger:
      return Whole(Short(bytes, 0));
    case kInteger:
      return Whole(static_cast<std::int32_t>(BigEndian(bytes)));
    case kBigInteger:
      return Whole(static_cast<std::int64_t>(BigEndian(bytes)));
    case kDouble:
      return std::bit_cast<double>(BigEndian(bytes));
    case kNumeric:
      return ReadNumeric(bytes);
    case kTimestamp:
      return ReadTimestamp(bytes);
    default:
      return std::string(bytes);
  }
}

}  // namespace

Oid ServerTypeOf(ValueType type) noexcept {
  switch (type) {
    case ValueType::Boolean:
      return kBoolean;
    case ValueType::Byte:
    case ValueType::Long:
      return kInteger;
    case ValueType::Decimal:
    case ValueType::Currency:
      return kNumeric;
    case ValueType::Double:
      return kDouble;
    case ValueType::Date:
      return kTimestamp;
    case ValueType::Null:
    case ValueType::Text:
      break;
  }
  return kText;
}

void AddValue(Values& values, const Variant& value, ValueType type) {
  if (IsNull(value)) return values.AddNull();
  switch (type) {
    case ValueType::Boolean:
      return values.Add(ToBoolean(value) ? "t" : "f");
    case ValueType::Byte:
      return values.Add(std::to_string(ToByte(value)));
    case ValueType::Long:
      return values.Add(std::to_string(ToLong(value)));
    case ValueType::Decimal:
    case ValueType::Currency:
      return values.Add(ToCurrency(value).ToText());
    case ValueType::Double:
      return values.Add(ShortestText(ToDouble(value)));
    case ValueType::Date:
      return values.Add(ToDate(value).ToIso());
    case ValueType::Null:
    case ValueType::Text:
      break;
  }
  values.Add(TextValue(value));
}

Variant ReadValue(const Result& result, int row, int column, ValueType type) {
  if (result.IsNull(row, column)) return Null();
  const Variant value = OwnValue(result.Bytes(row, column), result.Type(column));
  switch (type) {
    case ValueType::Boolean:
      return ToBoolean(value);
    case ValueType::Byte:
      return ToByte(value);
    case ValueType::Long:
      return ToLong(value);
    case ValueType::Currency:
      return ToCurrency(value);
    case ValueType::Decimal:
    case ValueType::Double:
      return ToDouble(value);
    case ValueType::Date:
      return ToDate(value);
    case ValueType::Null:
    case ValueType::Text:
      break;
  }
  return std::holds_alternative<std::string>(value) ? value : Variant(jet::TextOf(value));
}

}  // namespace tsv::db::postgres
