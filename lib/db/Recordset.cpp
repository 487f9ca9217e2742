#include "db/Recordset.h"

#include "db/EngineError.h"
#include "types/Text.h"

namespace tsv::db {

const std::string& Field::Name() const { return recordset_->NameAt(index_); }

DataTypeEnum Field::Type() const { return recordset_->TypeAt(index_); }

const Variant& Field::Value() const { return recordset_->ValueAt(index_); }

Field Recordset::Fields(std::string_view name) const {
  const std::size_t count = FieldCount();
  for (std::size_t index = 0; index < count; ++index) {
    if (text::CompareFolded(NameAt(index), name) == 0) return Field(*this, index);
  }
  Raise(EngineError::ItemNotFound, name);
}

Field Recordset::Fields(std::size_t index) const {
  if (index >= FieldCount()) Raise(EngineError::ItemNotFound, std::to_string(index));
  return Field(*this, index);
}

}  // namespace tsv::db
