#include "db/jet/FunctionTables.h"
#include "db/jet/TextValues.h"

namespace tsv::db::jet {
namespace {

const std::string* TextIn(const Variant& value) { return std::get_if<std::string>(&value); }

std::int32_t WholeOf(const Variant& value) {
  const std::string* text = TextIn(value);
  return text ? ParseLong(*text) : ToLong(value);
}

std::int32_t Within(std::int32_t whole, std::int32_t least, std::int32_t most) {
  if (whole < least || whole > most) Raise(RuntimeError::Overflow);
  return whole;
}

Variant CBool(Arguments a) {
  const std::string* text = TextIn(a[0]);
  return text ? ParseBoolean(*text) : ToBoolean(a[0]);
}

Variant CByte(Arguments a) {
  return std::holds_alternative<bool>(a[0]) ? ToByte(a[0]) : static_cast<std::uint8_t>(Within(WholeOf(a[0]), 0, 255));
}

Variant CInt(Arguments a) { return Within(WholeOf(a[0]), INT16_MIN, INT16_MAX); }
Variant CLng(Arguments a) { return WholeOf(a[0]); }

Variant CCur(Arguments a) {
  const std::string* text = TextIn(a[0]);
  return text ? ParseCurrency(*text) : ToCurrency(a[0]);
}

Variant CDbl(Arguments a) {
  const std::string* text = TextIn(a[0]);
  return text ? ParseDouble(*text) : ToDouble(a[0]);
}

Variant CDate(Arguments a) {
  const std::string* text = TextIn(a[0]);
  return text ? ParseDate(*text) : ToDate(a[0]);
}

Variant CStr(Arguments a) { return TextOf(a[0]); }
Variant IsDateValue(Arguments a) { return IsDate(a[0]); }

Variant IsNumericValue(Arguments a) {
  const std::string* text = TextIn(a[0]);
  return text ? IsNumberText(*text) : IsNumeric(a[0]);
}

// Null is no value of any type: conversions raise 94, tests answer no.
Function Conversion(std::string_view name, ValueType result, Variant (*call)(Arguments)) {
  return {.name = name,
          .arguments = {ArgumentKind::Any},
          .required = 1,
          .result = result,
          .passesNull = false,
          .call = call};
}

}  // namespace

std::vector<Function> ConversionFunctions() {
  return {
      Conversion("CStr", ValueType::Text, CStr),
      Conversion("CBool", ValueType::Boolean, CBool),
      Conversion("CByte", ValueType::Byte, CByte),
      Conversion("CInt", ValueType::Long, CInt),
      Conversion("CLng", ValueType::Long, CLng),
      Conversion("CCur", ValueType::Currency, CCur),
      Conversion("CDbl", ValueType::Double, CDbl),
      Conversion("CDate", ValueType::Date, CDate),
      Conversion("IsDate", ValueType::Boolean, IsDateValue),
      Conversion("IsNumeric", ValueType::Boolean, IsNumericValue),
  };
}

}  // namespace tsv::db::jet
