#pragma once

#include <string_view>
#include <vector>

#include "db/KeptRecordset.h"

namespace tsv::db {

// A query that every ledger has, under its name. Each returns one row; what no entry counts for is zero.
struct StoredQuery {
  enum class Kind {
    // The serial, and the balances just before a new entry of the codes on the date.
    SerialAndBalances,
    // The balances at a new key, leaving out the entry at an old one (an entry on its way to its new place) unless both
    // keys are equal. It verifies the balances that the entry at the new key carries, so it never reads those: it takes
    // the balances before that entry and adds the entry's own amount.
    LastBalances,
  };

  std::string_view name;
  Kind kind;
  std::vector<std::string_view> parameters;
  FieldDescriptions fields;
};

// ParQrySerialESaldos or ParQryLastSaldosByDataId, without regard to case; nothing for another name.
const StoredQuery* FindStoredQuery(std::string_view name);

}  // namespace tsv::db
