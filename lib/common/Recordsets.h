#pragma once

#include <memory>
#include <utility>

#include "db/Database.h"

namespace tsv::Module1 {

// Both close and let go of the object, whatever state it is in; their errors are ignored.
void FecharRecordset(std::shared_ptr<db::Recordset>& recordset) noexcept;
void FecharBanco(std::shared_ptr<db::Database>& banco) noexcept;

// Makes RecordCount complete and stands on the first row; an empty or forward-only recordset stays as it is.
void CompletarContagem(db::Recordset& recordset) noexcept;

// A recordset that one routine reads: closed when the routine ends, also by an error.
class ScopedRecordset {
 public:
  explicit ScopedRecordset(std::shared_ptr<db::Recordset> recordset) : recordset_(std::move(recordset)) {}
  ~ScopedRecordset() { FecharRecordset(recordset_); }
  ScopedRecordset(const ScopedRecordset&) = delete;
  ScopedRecordset& operator=(const ScopedRecordset&) = delete;

  db::Recordset& operator*() const { return *recordset_; }
  db::Recordset* operator->() const { return recordset_.get(); }

 private:
  std::shared_ptr<db::Recordset> recordset_;
};

}  // namespace tsv::Module1
