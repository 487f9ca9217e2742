#pragma once

#include <memory>
#include <string_view>

#include "db/Database.h"

namespace tsv::db::dao {

// Opens a database with the legacy engine of this machine, driven through automation on the calling thread; its errors
// pass as they are. Where no such engine is installed: nothing.
std::shared_ptr<Database> OpenWithLegacyEngine(std::string_view path, bool exclusive, bool readOnly,
                                               std::string_view connect);

}  // namespace tsv::db::dao
