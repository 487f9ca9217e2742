#pragma once

#include <memory>
#include <string>

#include "common/Engines.h"
#include "db/DBEngine.h"
#include "support/TemporaryFolder.h"

namespace tsv::test {

// A new ledger in a folder of its own, which goes with it.
class EmptyLedger {
 public:
  EmptyLedger() { CriarBancoDeDados(Path()); }

  std::string Path() const { return folder_.Path("ledger.tsv"); }
  std::shared_ptr<db::Database> Open() const {
    return db::DBEngine(AllDrivers()).OpenDatabase(Path(), false, false, kConnect);
  }

 private:
  TemporaryFolder folder_;
};

}  // namespace tsv::test
