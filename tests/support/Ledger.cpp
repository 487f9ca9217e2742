#include "support/Ledger.h"

#include <algorithm>
#include <cctype>
#include <map>

#include "common/Journal.h"
#include "common/Literals.h"
#include "types/Conversions.h"

namespace tsv::test {

namespace {

bool BeginsWith(const std::string& code, const std::string& prefix) {
  return code.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), code.begin(), [](char a, char b) {
           return std::toupper(static_cast<unsigned char>(a)) == std::toupper(static_cast<unsigned char>(b));
         });
}

bool InSameOrder(const Entry& a, const Entry& b) { return a.key < b.key; }

using Row = std::map<std::string, Variant>;

// Actions of one second in the only order that they can have on an entry: 9 settles it in part, 3 deletes it.
constexpr const char* kJournalInOrder =
    "HistoricosDeLancamentos Order By DataHora, Id, IIf(IdAcao = 9, 4, IIf(IdAcao = 3, 10, IdAcao))";

std::vector<Row> RowsOf(db::Database& database, const std::string& table) {
  std::vector<Row> all;
  const auto rows = database.OpenRecordset("Select * From " + table);
  for (; !rows->EndOfFile(); rows->MoveNext()) {
    Row& row = all.emplace_back();
    for (std::size_t i = 0; i < rows->FieldCount(); ++i) row[rows->Fields(i).Name()] = rows->Fields(i).Value();
  }
  return all;
}

bool Is(const Row& row, const char* flag) { return std::get<bool>(row.at(flag)); }

// Every id that was handed out has a journal that begins with its entry, ends with its deletion if it was deleted, and
// otherwise tells what the entry is now. What only the entry has is its version and its balances.
void ExpectAsJournalled(const std::map<std::int32_t, Row>& entries, const std::vector<Row>& journal,
                        std::int32_t serial) {
  std::map<std::int32_t, Row> newest;
  for (const Row& row : journal) {
    const std::int32_t id = ToLong(row.at("Id"));
    const std::int32_t action = ToLong(row.at("IdAcao"));
    const bool begins =
        action == Module1::kInclusao || (action == Module1::kEstorno && Is(row, "Estorno") && !Is(row, "Estornado"));
    const auto earlier = newest.find(id);
    EXPECT_EQ(earlier == newest.end(), begins) << "entry " << id << ", action " << action;
    EXPECT_TRUE(earlier == newest.end() || ToLong(earlier->second.at("IdAcao")) != Module1::kExclusao)
        << "entry " << id;
    newest[id] = row;
  }
  EXPECT_EQ(static_cast<std::int32_t>(newest.size()), serial);
  for (std::int32_t id = 1; id <= serial; ++id) {
    ASSERT_TRUE(newest.contains(id)) << "entry " << id;
    const Row& told = newest[id];
    const bool deleted = ToLong(told.at("IdAcao")) == Module1::kExclusao;
    ASSERT_NE(entries.contains(id), deleted) << "entry " << id;
    if (deleted) continue;
    for (const char* column : {"CodConta", "CodRecDesp", "CodCentroCusto", "IdParceiroComl", "Documento", "Valor",
                               "ValorPago", "Data", "DataReferencia", "DataVencimento", "Historico", "DataId",
                               "Realizado", "Estorno", "Estornado", "Transferencia"}) {
      EXPECT_EQ(entries.at(id).at(column), told.at(column)) << "entry " << id << ", " << column;
    }
  }
}

// The legs of a transfer go the same way, and what was reversed has its opposite.
void ExpectCounterparts(const std::map<std::int32_t, Row>& entries, const std::vector<Row>& transfers) {
  std::size_t legs = 0;
  for (const Row& transfer : transfers) {
    const auto outgoing = entries.find(ToLong(transfer.at("SerialSai")));
    const auto incoming = entries.find(ToLong(transfer.at("SerialEntra")));
    ASSERT_EQ(outgoing == entries.end(), incoming == entries.end());
    if (outgoing == entries.end()) continue;
    legs += 2;
    EXPECT_EQ(ToCurrency(outgoing->second.at("Valor")), -ToCurrency(incoming->second.at("Valor")));
    for (const char* column : {"Realizado", "Estornado"}) {
      EXPECT_EQ(outgoing->second.at(column), incoming->second.at(column)) << "transfer " << outgoing->first;
    }
  }
  Currency reversed;
  for (const auto& [id, entry] : entries) {
    const Currency amount = ToCurrency(entry.at("Valor"));
    if (Is(entry, "Estornado")) reversed += amount;
    if (Is(entry, "Estorno")) reversed += amount;
    if (!Is(entry, "Estorno") && ToLong(entry.at("Transferencia")) != 0) --legs;
  }
  EXPECT_EQ(reversed, Currency());
  EXPECT_EQ(legs, 0u) << "each leg belongs to one transfer";
}

}  // namespace

std::array<Currency, 5> BalancesAfter(const Entry& row, const std::vector<Entry>& entries) {
  std::array<Currency, 5> sums = {};
  for (const Entry& part : entries) {
    if (!part.counts || part.key > row.key) continue;
    if (BeginsWith(part.account, row.account)) sums[0] += part.amount;
    if (BeginsWith(part.type, row.type)) sums[1] += part.amount;
    const bool bothCentres = !row.centre.empty() && !part.centre.empty();
    if (bothCentres && BeginsWith(part.centre, row.centre)) sums[2] += part.amount;
    if (row.partner != 0 && part.partner == row.partner) sums[3] += part.amount;
    sums[4] += part.amount;
  }
  return sums;
}

void SetBalances(std::vector<Entry>& entries) {
  for (Entry& row : entries) row.balances = BalancesAfter(row, entries);
}

std::vector<Entry> ReadEntries(db::Database& database) {
  std::vector<Entry> entries;
  const auto rows = database.OpenRecordset("Select * From Lancamentos");
  const auto amount = [&](std::string_view column) { return ToCurrency(rows->Fields(column).Value()); };
  for (; !rows->EndOfFile(); rows->MoveNext()) {
    CLancamento row;
    row.CarregarDeRegistro(*rows);
    entries.push_back({row.Id(),
                       row.DataId(),
                       row.Valor(),
                       row.CodConta(),
                       row.CodRecDesp(),
                       row.CodCentroCusto(),
                       row.IdParceiroComl(),
                       row.Realizado() != "N",
                       {amount("SaldoConta"), amount("SaldoRecDesp"), amount("SaldoCentroCusto"),
                        amount("SaldoParceiroComl"), amount("SaldoGlobal")}});
  }
  std::sort(entries.begin(), entries.end(), InSameOrder);
  return entries;
}

void ExpectSameEntries(const std::vector<Entry>& actual, const std::vector<Entry>& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) {
    const Entry& a = actual[i];
    const Entry& e = expected[i];
    SCOPED_TRACE("entry " + e.key + " of account " + e.account + ", type " + e.type + ", cost centre '" + e.centre +
                 "', partner " + std::to_string(e.partner));
    ASSERT_EQ(a.key, e.key);
    ASSERT_EQ(a.id, e.id);
    ASSERT_EQ(a.amount.ToText(), e.amount.ToText());
    ASSERT_EQ(a.account, e.account);
    ASSERT_EQ(a.type, e.type);
    ASSERT_EQ(a.centre, e.centre);
    ASSERT_EQ(a.partner, e.partner);
    for (std::size_t k = 0; k < 5; ++k) ASSERT_EQ(a.balances[k].ToText(), e.balances[k].ToText()) << "balance " << k;
  }
}

std::size_t ExpectSound(const Company& company) {
  const auto database = company.Open();
  const std::vector<Entry> stored = ReadEntries(*database);
  std::vector<Entry> computed = stored;
  SetBalances(computed);
  ExpectSameEntries(stored, computed);

  std::map<std::int32_t, Row> entries;
  for (const Row& row : RowsOf(*database, "Lancamentos")) entries[ToLong(row.at("Id"))] = row;
  ExpectAsJournalled(entries, RowsOf(*database, kJournalInOrder), StoredSerial(*database));
  ExpectCounterparts(entries, RowsOf(*database, "Transferencias"));
  return stored.size();
}

std::int32_t Count(db::Database& database, std::string_view from) {
  return ToLong(database.OpenRecordset("SELECT Count(*) FROM " + std::string(from))->Fields(std::size_t{0}).Value());
}

std::int32_t StoredSerial(db::Database& database) {
  return ToLong(database.OpenRecordset("SELECT Serial FROM Serial")->Fields("Serial").Value());
}

}  // namespace tsv::test
