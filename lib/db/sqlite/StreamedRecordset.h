#pragma once

#include <cstdint>
#include <deque>
#include <exception>
#include <optional>
#include <vector>

#include "db/KeptRecordset.h"
#include "db/sqlite/StatementCache.h"

namespace tsv::db::sqlite {

// The values of the statement's current row, added to those of earlier rows.
void AppendRow(StatementLease& statement, std::vector<Variant>& values);

// A forward-only recordset: it holds one row and the statement that yields the next.
class StreamedRecordset final : public DescribedRecordset {
 public:
  explicit StreamedRecordset(StatementLease statement);

  // Reads the rest into memory and lets go of the statement, whose snapshot would keep this connection from writing. An
  // error met there is raised when the reader comes to it.
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

  std::optional<StatementLease> statement_;
  std::deque<std::vector<Variant>> rest_;  // once let go
  std::exception_ptr failure_;             // what ended the rest
  std::vector<Variant> row_;               // empty at the end
  std::int32_t met_ = 0;
};

}  // namespace tsv::db::sqlite
