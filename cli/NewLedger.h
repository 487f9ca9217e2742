#pragma once

#include <memory>
#include <string>

#include "db/Database.h"

namespace tsv::cli {

// A ledger in the making: unless it is kept it is gone again, for nobody could open half of one, nor make it anew.
class NewLedger {
 public:
  // An existing path is refused, and stays as it is.
  explicit NewLedger(std::string path);
  ~NewLedger();
  NewLedger(const NewLedger&) = delete;
  NewLedger& operator=(const NewLedger&) = delete;

  const std::shared_ptr<db::Database>& Database() const { return database_; }
  void Keep() { kept_ = true; }

 private:
  void Remove() noexcept;

  std::string path_;
  std::shared_ptr<db::Database> database_;
  bool kept_ = false;
};

// Raises a Failure for a path that is taken, before anything is asked of the user. Of a server only its answer tells.
void ExpectNoFile(const std::string& path);

}  // namespace tsv::cli
