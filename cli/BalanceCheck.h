#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "db/Recordset.h"
#include "types/Currency.h"
#include "types/Date.h"

namespace tsv::cli {

// The running totals of hierarchical codes: an amount on 1.1.2 counts for that code and for every code that it begins
// with, whether or not such a code exists yet.
class PrefixTotals {
 public:
  void Add(std::string_view code, Currency amount);
  Currency Of(std::string_view code);

 private:
  // A code's own total is the last; those before belong to its beginnings.
  const std::vector<Currency*>& TotalsFor(std::string_view code);

  std::unordered_map<std::u32string, Currency> totals_;  // by beginning, without regard to case
  std::unordered_map<std::string, std::vector<Currency*>> byCode_;
};

struct WrongBalance {
  std::int32_t id = 0;
  Date date;
  std::string key;
  std::string balance;  // the column's name
  Currency stored;
  Currency right;
};

// "Diferença no lançamento 7 de 05/07/2008 (chave ...): SaldoConta gravado 1,00, correto 2,00."
std::string TextOf(const WrongBalance& wrong);

// Recomputes the balances of all entries from their amounts alone, one after another in the ledger's order. What it
// keeps grows with the number of codes and partners, not of entries.
class BalanceCheck {
 public:
  static const char* const kQuery;

  // rows: of kQuery, forward-only. Stops at the first difference. progress hears how many entries are done.
  std::optional<WrongBalance> Run(db::Recordset& rows, const std::function<void(std::int64_t)>& progress);

  std::int64_t Entries() const { return entries_; }

 private:
  std::array<Currency, 5> Balances(const db::Recordset& row);

  PrefixTotals accounts_;
  PrefixTotals types_;
  PrefixTotals centres_;
  std::unordered_map<std::int32_t, Currency> partners_;
  Currency all_;
  std::int64_t entries_ = 0;
};

}  // namespace tsv::cli
