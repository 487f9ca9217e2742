#include "db/KeptRecordset.h"

#include <algorithm>
#include <utility>

#include "db/EngineError.h"

namespace tsv::db {

std::size_t DescribedRecordset::FieldCount() const {
  RequireOpen();
  return fields_->size();
}

void DescribedRecordset::Close() {
  RequireOpen();
  open_ = false;
}

void DescribedRecordset::RequireOpen() const {
  if (!open_) Raise(EngineError::ObjectClosed);
}

const std::string& DescribedRecordset::NameAt(std::size_t index) const {
  RequireOpen();
  return (*fields_)[index].name;
}

DataTypeEnum DescribedRecordset::TypeAt(std::size_t index) const {
  RequireOpen();
  return (*fields_)[index].type;
}

KeptRecordset::KeptRecordset(FieldDescriptions fields, std::vector<Variant> values)
    : DescribedRecordset(std::move(fields)),
      values_(std::move(values)),
      rows_(values_.size() / Description().size()),
      place_(1),
      met_(std::min<std::size_t>(rows_, 1)) {}

void KeptRecordset::MoveTo(std::size_t place) {
  place_ = place;
  met_ = std::max(met_, std::min(place, rows_));
}

void KeptRecordset::MoveFirst() {
  RequireOpen();
  if (rows_ == 0) Raise(EngineError::NoCurrentRecord);
  MoveTo(1);
}

void KeptRecordset::MoveLast() {
  RequireOpen();
  if (rows_ == 0) Raise(EngineError::NoCurrentRecord);
  MoveTo(rows_);
}

void KeptRecordset::MoveNext() {
  if (EndOfFile()) Raise(EngineError::NoCurrentRecord);
  MoveTo(place_ + 1);
}

void KeptRecordset::MovePrevious() {
  if (BOF()) Raise(EngineError::NoCurrentRecord);
  MoveTo(place_ - 1);
}

bool KeptRecordset::BOF() const {
  RequireOpen();
  return rows_ == 0 || place_ == 0;
}

bool KeptRecordset::EndOfFile() const {
  RequireOpen();
  return place_ > rows_;
}

std::int32_t KeptRecordset::RecordCount() const {
  RequireOpen();
  return static_cast<std::int32_t>(met_);
}

void KeptRecordset::Close() {
  DescribedRecordset::Close();
  values_ = {};
}

const Variant& KeptRecordset::ValueAt(std::size_t index) const {
  if (BOF() || EndOfFile()) Raise(EngineError::NoCurrentRecord);
  return values_[(place_ - 1) * Description().size() + index];
}

}  // namespace tsv::db
