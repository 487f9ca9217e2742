#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "db/Catalog.h"
#include "types/Date.h"

namespace tsv::db {

// The ledger's tables, the same for every engine; a table stands after those that it refers to.
std::vector<Table> LedgerTables();

// The ordering key of an entry: yyyymmdd of its day and its id in nine digits, so that entries of one day stand as they
// were posted. Compared as text; an id of ten digits makes it too long for its column.
std::string EntryKey(Date date, std::int64_t id);

// What the stored queries take for "no cost centre": no code may be one of these.
inline constexpr std::string_view kNoCostCentre = "@@@";
inline constexpr std::string_view kNoCostCentreToVerify = "$@#";

}  // namespace tsv::db
