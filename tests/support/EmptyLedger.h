#pragma once

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "common/Engines.h"
#include "db/DBEngine.h"

namespace tsv::test {

// A new ledger in a folder of its own, which goes with it.
class EmptyLedger {
 public:
  EmptyLedger() {
    std::string pattern = (std::filesystem::temp_directory_path() / "ledger-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    folder_ = pattern;
    CriarBancoDeDados(Path());
  }
  ~EmptyLedger() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  EmptyLedger(const EmptyLedger&) = delete;
  EmptyLedger& operator=(const EmptyLedger&) = delete;

  std::string Path() const { return folder_ + "/ledger.tsv"; }
  std::shared_ptr<db::Database> Open() const {
    return db::DBEngine(AllDrivers()).OpenDatabase(Path(), false, false, kConnect);
  }

 private:
  std::string folder_;
};

}  // namespace tsv::test
