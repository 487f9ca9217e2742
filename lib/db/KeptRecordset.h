#pragma once

#include <string>
#include <vector>

#include "db/Recordset.h"

namespace tsv::db {

struct FieldDescription {
  std::string name;
  DataTypeEnum type = DataTypeEnum::dbText;
};

// What recordsets of known fields have in common, whatever engine fills them.
class DescribedRecordset : public Recordset {
 public:
  std::size_t FieldCount() const final;
  void Close() override;

 protected:
  explicit DescribedRecordset(std::vector<FieldDescription> fields) : fields_(std::move(fields)) {}

  bool IsOpen() const noexcept { return open_; }
  void RequireOpen() const;  // 3420
  const std::vector<FieldDescription>& Description() const noexcept { return fields_; }

 private:
  const std::string& NameAt(std::size_t index) const final;
  DataTypeEnum TypeAt(std::size_t index) const final;

  std::vector<FieldDescription> fields_;
  bool open_ = true;
};

// A recordset that holds all its rows, independent of the database that they came from.
class KeptRecordset final : public DescribedRecordset {
 public:
  // values: row after row.
  KeptRecordset(std::vector<FieldDescription> fields, std::vector<Variant> values);

  void MoveFirst() override;
  void MoveLast() override;
  void MoveNext() override;
  void MovePrevious() override;
  bool BOF() const override;
  bool EndOfFile() const override;
  std::int32_t RecordCount() const override;
  void Close() override;

 private:
  const Variant& ValueAt(std::size_t index) const override;
  void MoveTo(std::size_t place);

  std::vector<Variant> values_;
  std::size_t rows_;
  std::size_t place_;  // 0: before the first row, rows_ + 1: after the last
  std::size_t met_;
};

}  // namespace tsv::db
