#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "support/Company.h"

namespace tsv::test {

inline const std::string kColumnsOfEntryAndJournal =
    "Id,DataId,CodConta,CodRecDesp,CodCentroCusto,IdParceiroComl,Documento,Valor,ValorPago,Data,DataReferencia,"
    "DataVencimento,Historico,Realizado,Estorno,Estornado,Transferencia,SaldoConta,SaldoRecDesp,SaldoGlobal,"
    "SaldoCentroCusto,SaldoParceiroComl,IdUsuario";
inline const std::string kEntryColumns = kColumnsOfEntryAndJournal + ",IdConcorrencia";

// One entry as the definition of the balances sees it.
struct Entry {
  std::int32_t id = 0;
  std::string key;
  Currency amount;
  std::string account;
  std::string type;
  std::string centre;          // empty: none
  std::int32_t partner = 0;    // 0: none
  std::string realised = "?";  // N: settled as not realised, in no balance
};

using Balances = std::array<Currency, 5>;  // account, type, cost centre, partner, all

// Without regard to case; nothing is below no code.
bool IsBelow(const std::string& code, const std::string& parent);

// The five balances from the amounts of the included entries alone: of those whose code begins with the subject's code,
// or that have its partner, or simply all.
template <typename Entries, typename Included>
Balances PlainSums(const Entries& entries, const Entry& subject, Included included) {
  Balances sums = {};
  for (const Entry& entry : entries) {
    if (entry.realised == "N" || !included(entry)) continue;
    if (IsBelow(entry.account, subject.account)) sums[0] += entry.amount;
    if (IsBelow(entry.type, subject.type)) sums[1] += entry.amount;
    if (IsBelow(entry.centre, subject.centre)) sums[2] += entry.amount;
    if (subject.partner != 0 && entry.partner == subject.partner) sums[3] += entry.amount;
    sums[4] += entry.amount;
  }
  return sums;
}

// As they stand after the entry, in the order of the keys.
template <typename Entries>
Balances BalancesAfter(const Entry& entry, const Entries& entries) {
  return PlainSums(entries, entry, [&](const Entry& other) { return other.key <= entry.key; });
}

template <typename... Values>
std::vector<Variant> RowOf(const Values&... values) {
  return {Variant(values)...};
}

// The columns of entries, and what an entry object holds for each.
std::vector<std::string> EntryColumns();
std::vector<Variant> ValuesOf(const CLancamento& entry);

using Row = std::map<std::string, Variant>;
std::vector<Row> RowsOf(db::Database& database, const std::string& table);  // and perhaps an order

// Nothing lost and nothing half-written: the stored balances are those of the stored amounts, every serial handed out
// has its journal, every entry is what the newest row of its journal tells, none lacks its counterpart in a transfer or
// a reversal. Returns the number of entries.
std::size_t ExpectSound(const Company& company);

std::int32_t Count(db::Database& database, std::string_view from);  // rows of "table" or "table WHERE ..."
std::int32_t StoredSerial(db::Database& database);

}  // namespace tsv::test
