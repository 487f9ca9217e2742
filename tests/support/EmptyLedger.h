#pragma once

#include <memory>

#include "common/Engines.h"
#include "db/DBEngine.h"
#include "support/LedgerPlace.h"

namespace tsv::test {

// A new ledger in a place of its own, which goes with it.
class EmptyLedger : public LedgerPlace {
 public:
  EmptyLedger() { CriarBancoDeDados(Path()); }
  std::shared_ptr<db::Database> Open() const {
    return db::DBEngine(AllDrivers()).OpenDatabase(Path(), false, false, kConnect);
  }
};

}  // namespace tsv::test
