#pragma once

#include <vector>

#include "db/Catalog.h"

namespace tsv::db {

// The ledger's tables, the same for every engine; a table stands after those that it refers to.
std::vector<Table> LedgerTables();

}  // namespace tsv::db
