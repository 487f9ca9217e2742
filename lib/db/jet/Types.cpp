#include "db/jet/Types.h"

#include "db/EngineError.h"

namespace tsv::db::jet {

bool IsNumber(ValueType type) noexcept {
  switch (type) {
    case ValueType::Boolean:
    case ValueType::Byte:
    case ValueType::Long:
    case ValueType::Decimal:
    case ValueType::Currency:
    case ValueType::Double:
      return true;
    case ValueType::Null:
    case ValueType::Date:
    case ValueType::Text:
      return false;
  }
  return false;
}

ValueType CommonNumber(ValueType a, ValueType b) noexcept {
  for (const ValueType wider : {ValueType::Double, ValueType::Currency, ValueType::Decimal}) {
    if (a == wider || b == wider) return wider;
  }
  return ValueType::Long;
}

ValueType CommonValue(ValueType a, ValueType b) noexcept {
  if (a == b || b == ValueType::Null) return a;
  if (a == ValueType::Null) return b;
  if (a == ValueType::Text || b == ValueType::Text) return ValueType::Text;
  if (a == ValueType::Date || b == ValueType::Date) return ValueType::Double;
  return CommonNumber(a, b);
}

ValueType ComparisonType(ValueType a, ValueType b) {
  if (a == ValueType::Null || b == ValueType::Null || a == b) return a == ValueType::Null ? b : a;
  if (a == ValueType::Text || b == ValueType::Text) Raise(EngineError::CriteriaTypeMismatch);
  return CommonValue(a, b);
}

ValueType TypeOf(const Variant& literal) noexcept {
  if (std::holds_alternative<std::int32_t>(literal)) return ValueType::Long;
  if (std::holds_alternative<Currency>(literal)) return ValueType::Decimal;
  if (std::holds_alternative<double>(literal)) return ValueType::Double;
  if (std::holds_alternative<Date>(literal)) return ValueType::Date;
  return ValueType::Text;
}

}  // namespace tsv::db::jet
