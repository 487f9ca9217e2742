#pragma once

#include <cstdint>
#include <deque>
#include <exception>
#include <memory>
#include <vector>

#include "db/KeptRecordset.h"

namespace tsv::db {

// Where the rows of a running statement come from. Its end lets go of the statement.
class RowSource {
 public:
  virtual ~RowSource() = default;
  virtual bool Next(std::vector<Variant>& row) = 0;  // appends the values of the next row; false: there is none
};

// A forward-only recordset: it holds one row and the statement that yields the next.
class StreamedRecordset final : public DescribedRecordset {
 public:
  StreamedRecordset(FieldDescriptions fields, std::unique_ptr<RowSource> source);

  // Reads the rest into memory and lets go of the statement, which would keep its connection from other work. An error
  // met there is raised when the reader comes to it.
  void LetGo() noexcept;

  // Closes it because its database closes, unless it is closed already.
  void Abandon() noexcept;

  void MoveFirst() override;
  void MoveLast() override;
  void MoveNext() override;
  void MovePrevious() override;
  bool BOF() const override;
  bool EndOfFile() const override;
  std::int32_t RecordCount() const override { return RequireOpen(), met_; }
  void Close() override;

 private:
  const Variant& ValueAt(std::size_t index) const override;
  bool Fetch(std::vector<Variant>& row);
  void Advance();

  std::unique_ptr<RowSource> source_;
  std::deque<std::vector<Variant>> rest_;  // once let go
  std::exception_ptr failure_;             // what ended the rest
  std::vector<Variant> row_;               // empty at the end
  std::int32_t met_ = 0;
};

}  // namespace tsv::db
