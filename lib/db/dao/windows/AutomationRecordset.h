#pragma once

#include <string>
#include <utility>
#include <vector>

#include "db/Recordset.h"
#include "db/dao/windows/LateBound.h"

namespace tsv::db::dao {

// A recordset that is an automation object of DAO's shape: the legacy engine's, or one that a script hands in. Its
// errors are those of the object, raised by the first member that needs it.
class AutomationRecordset final : public Recordset {
 public:
  explicit AutomationRecordset(LateBound recordset) : recordset_(std::move(recordset)) {}

  void MoveFirst() override { recordset_.Call(L"MoveFirst"); }
  void MoveLast() override { recordset_.Call(L"MoveLast"); }
  void MoveNext() override { recordset_.Call(L"MoveNext"); }
  void MovePrevious() override { recordset_.Call(L"MovePrevious"); }
  bool BOF() const override;
  bool EndOfFile() const override;
  std::int32_t RecordCount() const override;
  std::size_t FieldCount() const override { return Names().size(); }
  void Close() override { recordset_.Call(L"Close"); }

  IDispatch* Object() const noexcept { return recordset_.Object(); }

 private:
  const std::string& NameAt(std::size_t index) const override { return Names()[index]; }
  DataTypeEnum TypeAt(std::size_t index) const override;
  const Variant& ValueAt(std::size_t index) const override;

  const std::vector<std::string>& Names() const;
  LateBound FieldAt(std::size_t index) const;

  LateBound recordset_;
  mutable std::vector<std::string> names_;  // of the fields, once read
  mutable std::vector<Variant> values_;     // as last read
};

}  // namespace tsv::db::dao
