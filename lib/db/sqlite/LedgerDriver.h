#pragma once

#include <chrono>

#include "db/DBEngine.h"

namespace tsv::db::sqlite {

// The embedded engine: ledgers in files of their own.
class LedgerDriver final : public Driver {
 public:
  // How long a writer waits for another before it gives up with 3260.
  explicit LedgerDriver(std::chrono::milliseconds patience = std::chrono::seconds(10)) : patience_(patience) {}

  bool Recognises(std::string_view path) const override;

  // Not a ledger, a damaged one, or one of a newer version: 3343; another password: 3031; held exclusively: 3051.
  std::shared_ptr<Database> Open(std::string_view path, bool exclusive, bool readOnly,
                                 std::string_view connect) const override;

 private:
  std::chrono::milliseconds patience_;
};

}  // namespace tsv::db::sqlite
