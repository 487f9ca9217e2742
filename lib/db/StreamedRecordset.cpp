#include "db/StreamedRecordset.h"

#include <utility>

#include "db/EngineError.h"

namespace tsv::db {

StreamedRecordset::StreamedRecordset(FieldDescriptions fields, std::unique_ptr<RowSource> source)
    : DescribedRecordset(std::move(fields)), source_(std::move(source)) {
  Advance();
}

void StreamedRecordset::LetGo() noexcept {
  try {
    for (std::vector<Variant> row; Fetch(row);) rest_.push_back(std::move(row));
  } catch (...) {
    failure_ = std::current_exception();
  }
}

void StreamedRecordset::MoveFirst() {
  RequireOpen();
  if (met_ == 0) Raise(EngineError::NoCurrentRecord);
  if (met_ > 1 || EndOfFile()) Raise(EngineError::InvalidOperation, "volta numa consulta só de avanço");
}

void StreamedRecordset::MoveLast() {
  RequireOpen();
  Raise(EngineError::InvalidOperation, "ida ao fim numa consulta só de avanço");
}

void StreamedRecordset::MoveNext() {
  if (EndOfFile()) Raise(EngineError::NoCurrentRecord);
  Advance();
}

void StreamedRecordset::MovePrevious() {
  RequireOpen();
  Raise(EngineError::InvalidOperation, "volta numa consulta só de avanço");
}

bool StreamedRecordset::BOF() const {
  RequireOpen();
  return met_ == 0;
}

bool StreamedRecordset::EndOfFile() const {
  RequireOpen();
  return row_.empty();
}

void StreamedRecordset::Close() {
  DescribedRecordset::Close();
  source_.reset();
  rest_.clear();
  row_.clear();
}

void StreamedRecordset::Abandon() noexcept {
  if (IsOpen()) Close();
}

const Variant& StreamedRecordset::ValueAt(std::size_t index) const {
  if (EndOfFile()) Raise(EngineError::NoCurrentRecord);
  return row_[index];
}

// The next row from the statement, which ends with its last one; false when there is none.
bool StreamedRecordset::Fetch(std::vector<Variant>& row) {
  row.clear();
  if (!source_) return false;
  std::vector<Variant> values;
  values.reserve(Description().size());
  try {
    if (!source_->Next(values)) source_.reset();
  } catch (...) {
    source_.reset();  // it would begin anew
    throw;
  }
  row = std::move(values);
  return !row.empty();
}

void StreamedRecordset::Advance() {
  if (!rest_.empty()) {
    row_ = std::move(rest_.front());
    rest_.pop_front();
  } else if (failure_) {
    row_.clear();
    std::rethrow_exception(std::exchange(failure_, nullptr));
  } else if (!Fetch(row_)) {
    return;
  }
  ++met_;
}

}  // namespace tsv::db
