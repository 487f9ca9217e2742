#include "support/Ledger.h"

#include <algorithm>
#include <cctype>

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

  EXPECT_EQ(Count(*database, "HistoricosDeLancamentos WHERE IdAcao = 1"), StoredSerial(*database));
  const auto agreeing = database->OpenRecordset(
      "SELECT Count(*) FROM Lancamentos AS L INNER JOIN HistoricosDeLancamentos AS H ON L.Id = H.Id "
      "WHERE H.IdAcao = 1 AND L.DataId = H.DataId AND L.Valor = H.Valor AND L.CodConta = H.CodConta");
  EXPECT_EQ(static_cast<std::size_t>(ToLong(agreeing->Fields(std::size_t{0}).Value())), stored.size());
  return stored.size();
}

std::int32_t Count(db::Database& database, std::string_view from) {
  return ToLong(database.OpenRecordset("SELECT Count(*) FROM " + std::string(from))->Fields(std::size_t{0}).Value());
}

std::int32_t StoredSerial(db::Database& database) {
  return ToLong(database.OpenRecordset("SELECT Serial FROM Serial")->Fields("Serial").Value());
}

}  // namespace tsv::test
