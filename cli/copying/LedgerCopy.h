#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "Context.h"
#include "Interruption.h"
#include "copying/RowText.h"
#include "db/Catalog.h"
#include "db/Database.h"

namespace tsv::cli {

// Fills a new ledger with all that another holds and holds the two against each other. Both are in a transaction of the
// caller's meanwhile: of the source because nobody may post in it while its tables are read one after another.
class LedgerCopy {
 public:
  LedgerCopy(Context& context, const Interruption& interruption, db::Database& source, db::Database& target);

  // Raises a Failure for any difference, and for a balance that does not verify.
  void Run();

  const std::vector<std::pair<std::string, std::int64_t>>& Rows() const { return rows_; }  // by table

 private:
  void Empty();
  void Copy();
  void Compare();
  void Verify();
  void HidePassword(const db::Table& table, const db::Recordset& row);

  Context& context_;
  const Interruption& interruption_;
  db::Database& source_;
  db::Database& target_;
  const std::vector<db::Table> tables_;
  std::vector<std::pair<std::string, std::int64_t>> rows_;
  std::int64_t total_ = 0;
  std::vector<TableDigest> digests_;
};

}  // namespace tsv::cli
