#pragma once

#include <chrono>

#include "db/DBEngine.h"

namespace tsv::db::postgres {

// The server engine: ledgers in databases of PostgreSQL servers, one a database, named by an address instead of a file:
// "postgresql://user@host/database", or any other form of address that libpq takes behind that beginning; what it
// leaves out comes from libpq's environment. A build without libpq raises 3051 for each and says so.
class ServerDriver final : public Driver {
 public:
  // How long a writer waits for another before it gives up with 3260.
  explicit ServerDriver(std::chrono::milliseconds patience = std::chrono::seconds(10)) : patience_(patience) {}

  bool Recognises(std::string_view path) const override;

  // A server that cannot be reached, or refuses: 3151 with its reason; a database without a ledger: 3343; another
  // password of the ledger: 3031; exclusive: 3251.
  std::shared_ptr<Database> Open(std::string_view path, bool exclusive, bool readOnly,
                                 std::string_view connect) const override;

  // Makes a new ledger in the database, in a schema of its own; one that exists raises 3204.
  void Create(std::string_view path, std::string_view password) const;

  // Takes the ledger out of the database, with all that it holds.
  void Remove(std::string_view path) const;

 private:
  std::chrono::milliseconds patience_;
};

}  // namespace tsv::db::postgres
