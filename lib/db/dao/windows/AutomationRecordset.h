#pragma once

#include <string>
#include <vector>

#include "db/Recordset.h"
#include "db/dao/windows/LateBound.h"

namespace tsv::db::dao {

// A recordset that is an automation object of DAO's shape: the legacy engine's, or one that a script hands in. Its
// errors are those of the object.
class AutomationRecordset final : public Recordset {
 public:
  explicit AutomationRecordset(LateBound recordset);

  void MoveFirst() override { recordset_.Call(L"MoveFirst"); }
  void MoveLast() override { recordset_.Call(L"MoveLast"); }
  void MoveNext() override { recordset_.Call(L"MoveNext"); }
  void MovePrevious() override { recordset_.Call(L"MovePrevious"); }
  bool BOF() const override;
  bool EndOfFile() const override;
  std::int32_t RecordCount() const override;
  std::size_t FieldCount() const override { return names_.size(); }
  void Close() override { recordset_.Call(L"Close"); }

  IDispatch* Object() const noexcept { return recordset_.Object(); }

 private:
  const std::string& NameAt(std::size_t index) const override { return names_[index]; }
  DataTypeEnum TypeAt(std::size_t index) const override;
  const Variant& ValueAt(std::size_t index) const override;

  LateBound recordset_;
  std::vector<std::string> names_;
  mutable std::vector<Variant> values_;  // as last read
};

}  // namespace tsv::db::dao
