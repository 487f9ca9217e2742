#pragma once

#include <memory>
#include <string>
#include <vector>

#include "db/Recordset.h"

namespace tsv::db {

struct FieldDescription {
  std::string name;
  DataTypeEnum type = DataTypeEnum::dbText;
};

// Shared by all recordsets of one query.
using FieldDescriptions = std::shared_ptr<const std::vector<FieldDescription>>;

// What recordsets of known fields have in common, whatever engine fills them.
class DescribedRecordset : public Recordset {
 public:
  std::size_t FieldCount() const final;
  void Close() override;

 protected:
  explicit DescribedRecordset(FieldDescriptions fields) : fields_(std::move(fields)) {}

  bool IsOpen() const noexcept { return open_; }
  void RequireOpen() const;  // 3420
  const std::vector<FieldDescription>& Description() const noexcept { return *fields_; }

 private:
  const std::string& NameAt(std::size_t index) const final;
  DataTypeEnum TypeAt(std::size_t index) const final;

  FieldDescriptions fields_;
  bool open_ = true;
};

// A recordset that holds all its rows, independent of the database that they came from.
class KeptRecordset final : public DescribedRecordset {
 public:
  // values: row after row.
  KeptRecordset(FieldDescriptions fields, std::vector<Variant> values);

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
