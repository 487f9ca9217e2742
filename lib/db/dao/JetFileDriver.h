#pragma once

#include "db/DBEngine.h"

namespace tsv::db::dao {

// Files of the legacy engine, which opens them where it is installed (on Windows). Elsewhere Open raises 3343 and tells
// the user to import the file.
class JetFileDriver final : public Driver {
 public:
  bool Recognises(std::string_view path) const override;
  std::shared_ptr<Database> Open(std::string_view path, bool exclusive, bool readOnly,
                                 std::string_view connect) const override;
};

}  // namespace tsv::db::dao
