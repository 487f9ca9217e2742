#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "db/Database.h"
#include "db/sqlite/Balances.h"

namespace tsv::db::sqlite {

// A query that every ledger has, under its name. Each returns one row; what no entry counts for is zero.
struct StoredQuery {
  std::string_view name;
  std::vector<std::string_view> parameters;
  std::shared_ptr<Recordset> (*open)(Balances& balances, const std::vector<QueryDef::Parameter>& parameters);
};

// ParQrySerialESaldos: the serial, and the balances just before a new entry of the codes on the date.
//
// ParQryLastSaldosByDataId: the balances at one entry, leaving out another (an entry on its way to its new place). It
// serves to verify what the entry at that key carries, so it rests on the entries before it only.
//
// Without regard to case; nothing for another name.
const StoredQuery* FindStoredQuery(std::string_view name);

}  // namespace tsv::db::sqlite
