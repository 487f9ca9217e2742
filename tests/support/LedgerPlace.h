#pragma once

#include <string>

#include "support/TemporaryFolder.h"

namespace tsv::test {

// Where a new ledger may be made: a file in a folder of its own, or, when TSV_SERVIDOR holds the address of a server's
// database, a database of its own on that server. It goes with all that it holds.
class LedgerPlace {
 public:
  LedgerPlace();
  ~LedgerPlace();
  LedgerPlace(const LedgerPlace&) = delete;
  LedgerPlace& operator=(const LedgerPlace&) = delete;

  static bool OnServer();
  // For the places made from now on; empty: files. Returns what was used before.
  static std::string UseServer(std::string address);

  const std::string& Path() const { return path_; }

  // Keeps the ledger as it is now, and makes it so again. Nobody may have it open.
  void Keep() const;
  void Restore() const;

 private:
  TemporaryFolder folder_;
  std::string database_;  // on a server
  std::string path_;
};

}  // namespace tsv::test
