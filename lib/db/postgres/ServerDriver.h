#pragma once

#include "db/DBEngine.h"

namespace tsv::db::postgres {

// Ledgers on a server, named by an address instead of a file. This build has no server engine: Open raises 3051 and
// says so.
class ServerDriver final : public Driver {
 public:
  bool Recognises(std::string_view path) const override;
  std::shared_ptr<Database> Open(std::string_view path, bool exclusive, bool readOnly,
                                 std::string_view connect) const override;
};

}  // namespace tsv::db::postgres
