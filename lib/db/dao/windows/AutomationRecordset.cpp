#include "db/dao/windows/AutomationRecordset.h"

#include "types/Conversions.h"

namespace tsv::db::dao {
namespace {

Variant Read(const LateBound& object, const wchar_t* name) { return ValueOf(object.Get(name).Raw()); }

}  // namespace

const std::vector<std::string>& AutomationRecordset::Names() const {
  if (!names_.empty()) return names_;
  const LateBound fields = recordset_.ObjectFrom(L"Fields");
  const std::int32_t count = ToLong(Read(fields, L"Count"));
  std::vector<std::string> names;
  for (std::int32_t i = 0; i < count; ++i) {
    names.push_back(ToText(Read(fields.ObjectFrom(L"Item", ArgumentsOf(i)), L"Name")));
  }
  values_.resize(names.size());
  return names_ = std::move(names);
}

LateBound AutomationRecordset::FieldAt(std::size_t index) const {
  return recordset_.ObjectFrom(L"Fields").ObjectFrom(L"Item", ArgumentsOf(Names()[index]));
}

bool AutomationRecordset::BOF() const { return ToBoolean(Read(recordset_, L"BOF")); }

bool AutomationRecordset::EndOfFile() const { return ToBoolean(Read(recordset_, L"EOF")); }

std::int32_t AutomationRecordset::RecordCount() const { return ToLong(Read(recordset_, L"RecordCount")); }

DataTypeEnum AutomationRecordset::TypeAt(std::size_t index) const {
  return static_cast<DataTypeEnum>(ToLong(Read(FieldAt(index), L"Type")));
}

const Variant& AutomationRecordset::ValueAt(std::size_t index) const {
  return values_[index] = Read(FieldAt(index), L"Value");
}

}  // namespace tsv::db::dao
