#include "db/DataTypes.h"

#include "db/EngineError.h"

namespace tsv::db {

DataTypeEnum DataTypeOf(ValueType type) noexcept {
  switch (type) {
    case ValueType::Boolean:
      return DataTypeEnum::dbBoolean;
    case ValueType::Byte:
      return DataTypeEnum::dbByte;
    case ValueType::Long:
      return DataTypeEnum::dbLong;
    case ValueType::Currency:
      return DataTypeEnum::dbCurrency;
    case ValueType::Decimal:
    case ValueType::Double:
      return DataTypeEnum::dbDouble;
    case ValueType::Date:
      return DataTypeEnum::dbDate;
    case ValueType::Null:
    case ValueType::Text:
      break;
  }
  return DataTypeEnum::dbText;
}

ValueType ValueTypeOf(DataTypeEnum type) {
  for (const ValueType candidate : {ValueType::Boolean, ValueType::Byte, ValueType::Long, ValueType::Currency,
                                    ValueType::Double, ValueType::Date, ValueType::Text}) {
    if (DataTypeOf(candidate) == type) return candidate;
  }
  Raise(EngineError::UnrecognisedFile, "catálogo de colunas");
}

}  // namespace tsv::db
