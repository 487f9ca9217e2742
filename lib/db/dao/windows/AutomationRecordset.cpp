#include "db/dao/windows/AutomationRecordset.h"

#include <utility>

#include "types/Conversions.h"

namespace tsv::db::dao {
namespace {

Variant Read(const LateBound& object, const wchar_t* name) { return ValueOf(object.Get(name).Raw()); }

}  // namespace

AutomationRecordset::AutomationRecordset(LateBound recordset) : recordset_(std::move(recordset)) {
  const LateBound fields = recordset_.ObjectFrom(L"Fields");
  const std::int32_t count = ToLong(Read(fields, L"Count"));
  for (std::int32_t i = 0; i < count; ++i) {
    names_.push_back(ToText(Read(fields.ObjectFrom(L"Item", ArgumentsOf(i)), L"Name")));
  }
  values_.resize(names_.size());
}

bool AutomationRecordset::BOF() const { return ToBoolean(Read(recordset_, L"BOF")); }

bool AutomationRecordset::EndOfFile() const { return ToBoolean(Read(recordset_, L"EOF")); }

std::int32_t AutomationRecordset::RecordCount() const { return ToLong(Read(recordset_, L"RecordCount")); }

DataTypeEnum AutomationRecordset::TypeAt(std::size_t index) const {
  const LateBound field = recordset_.ObjectFrom(L"Fields").ObjectFrom(L"Item", ArgumentsOf(names_[index]));
  return static_cast<DataTypeEnum>(ToLong(Read(field, L"Type")));
}

const Variant& AutomationRecordset::ValueAt(std::size_t index) const {
  const LateBound field = recordset_.ObjectFrom(L"Fields").ObjectFrom(L"Item", ArgumentsOf(names_[index]));
  return values_[index] = Read(field, L"Value");
}

}  // namespace tsv::db::dao
