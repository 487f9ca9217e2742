#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "support/Company.h"

namespace tsv::test {

// One entry as the definition of the balances sees it.
struct Entry {
  std::int32_t id = 0;
  std::string key;
  Currency amount;
  std::string account;
  std::string type;
  std::string centre;                     // empty: none
  std::int32_t partner = 0;               // 0: none
  bool counts = true;                     // settled as not realised: in no balance
  std::array<Currency, 5> balances = {};  // account, type, cost centre, partner, all
};

// The five balances as they stand after the entry, from the amounts alone: those of all entries up to it, in the order
// of their keys, whose code begins with its code, or that have its partner, or simply all.
std::array<Currency, 5> BalancesAfter(const Entry& row, const std::vector<Entry>& entries);
void SetBalances(std::vector<Entry>& entries);

// The stored entries in the order of their keys, with their stored balances.
std::vector<Entry> ReadEntries(db::Database& database);

// Equal entries with equal balances.
void ExpectSameEntries(const std::vector<Entry>& actual, const std::vector<Entry>& expected);

// Nothing lost and nothing half-written: the stored balances are those of the stored amounts, every serial handed out
// has its journal, every entry is what the newest row of its journal tells, none lacks its counterpart in a transfer or
// a reversal. Returns the number of entries.
std::size_t ExpectSound(const Company& company);

std::int32_t Count(db::Database& database, std::string_view from);  // rows of "table" or "table WHERE ..."
std::int32_t StoredSerial(db::Database& database);

}  // namespace tsv::test
