#pragma once

#include <string>

namespace tsv::db::postgres {

// Creates the stored queries as functions of the ledger's schema, and what they rest on: the balances in force before a
// key, found from those that entries carry instead of from all amounts. After SqlFunctions and the tables.
std::string SqlBalances();

}  // namespace tsv::db::postgres
