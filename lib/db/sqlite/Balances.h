#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "db/sqlite/Connection.h"
#include "types/Currency.h"

// The balances in force before a key, found from those that entries carry instead of from all amounts. An entry that
// was settled as not realised ('N') does not count, but the balances that it carries are as true as any other's.
namespace tsv::db::sqlite {

// One of the three ways of classifying entries by codes, of which one that begins with another lies below it.
struct Classification {
  const char* masterTable;
  const char* codeColumn;
  const char* balanceColumn;
};
inline constexpr Classification kAccounts = {"Contas", "CodConta", "SaldoConta"};
inline constexpr Classification kTypes = {"TiposMovimentacoes", "CodRecDesp", "SaldoRecDesp"};
inline constexpr Classification kCostCentres = {"CentrosDeCusto", "CodCentroCusto", "SaldoCentroCusto"};

// Whether a code parameter names anything: "@@@" and "$@#" stand for none.
bool NamesACode(std::string_view code) noexcept;

// The sum of the counting entries before a key whose code is the given one or lies below it.
//
// The last entry of exactly that code carries the sum up to itself; what came after it on codes below is added. A code
// below contributes the difference of its own sums at the two keys, found in the same way, or its few entries between
// them. So only codes with entries after the last known point cost more than one seek, and a code that nobody ever
// posted on (a heading) costs a seek or two for each code below it, however long the ledger is.
class CodeBalances {
 public:
  CodeBalances(Connection& connection, const Classification& classification);

  Currency Before(std::string_view code, std::string_view key);

 private:
  struct Point {
    std::string key;  // empty: before the first entry
    Currency balance;
  };

  void LoadCodesBelow(std::string_view code);
  Point LastPoint(std::string_view code, std::string_view before);
  // Of the counting entries between two keys on exactly that code; nothing when they are not few.
  std::optional<Currency> SumOfFew(std::string_view code, std::string_view after, std::string_view before);

  Currency BalanceOf(std::size_t node, std::string_view before);
  Currency SumOfNode(std::size_t node, std::string_view after, std::string_view before);
  Currency SumOfNodes(std::size_t first, std::size_t end, std::string_view after, std::string_view before);

  // The codes below the one asked for, in their order, in which those below one code follow it; and where they end.
  std::vector<std::string> codes_;
  std::vector<std::size_t> ends_;

  Statement balance_;  // the last point, and the sum since it on the codes below unless that takes too many entries
  Statement codesBelow_;
  Statement lastPoint_;
  Statement own_;
};

// A counting entry, as far as balances are concerned.
struct CountingEntry {
  Currency amount;
  std::string account;
  std::string type;
  std::string costCentre;    // empty: none
  std::int64_t partner = 0;  // 0: none
};

class Balances {
 public:
  explicit Balances(Connection& connection);

  CodeBalances accounts;
  CodeBalances types;
  CodeBalances costCentres;

  Currency OfPartnerBefore(std::int64_t partner, std::string_view key);  // 0: no partner, no balance
  Currency GlobalBefore(std::string_view key);
  std::optional<CountingEntry> EntryAt(std::string_view key);
  std::optional<std::int64_t> Serial();

 private:
  Statement partner_;
  Statement global_;
  Statement entry_;
  Statement serial_;
};

}  // namespace tsv::db::sqlite
