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
// ParQryLastSaldosByDataId: the balances at a new key, leaving out the entry at an old one (an entry on its way to its
// new place) unless both keys are equal. It verifies the balances that the entry at the new key carries, so it never
// reads those: it takes the balances before that entry and adds the entry's own amount.
//
// Without regard to case; nothing for another name.
const StoredQuery* FindStoredQuery(std::string_view name);

}  // namespace tsv::db::sqlite
