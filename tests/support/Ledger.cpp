#include "support/Ledger.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include "common/Journal.h"
#include "common/Literals.h"
#include "types/Conversions.h"

namespace tsv::test {

namespace {

// Actions of one second in the only order that they can have on an entry: 9 settles it in part, 3 deletes it.
constexpr const char* kJournalInOrder =
    "HistoricosDeLancamentos Order By DataHora, Id, IIf(IdAcao = 9, 4, IIf(IdAcao = 3, 10, IdAcao))";

bool Is(const Row& row, const char* flag) { return std::get<bool>(row.at(flag)); }

std::string TextOrNone(const Variant& value) { return IsNull(value) ? "" : ToText(value); }

void ExpectBalanced(const std::vector<Row>& rows) {
  std::vector<Entry> entries;
  for (const Row& row : rows) {
    const Variant& partner = row.at("IdParceiroComl");
    entries.push_back({ToLong(row.at("Id")), TextOrNone(row.at("DataId")), ToCurrency(row.at("Valor")),
                       TextOrNone(row.at("CodConta")), TextOrNone(row.at("CodRecDesp")),
                       TextOrNone(row.at("CodCentroCusto")), IsNull(partner) ? 0 : ToLong(partner),
                       TextOrNone(row.at("Realizado"))});
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    Balances stored;
    std::size_t place = 0;
    for (const char* column : {"SaldoConta", "SaldoRecDesp", "SaldoCentroCusto", "SaldoParceiroComl", "SaldoGlobal"}) {
      stored[place++] = ToCurrency(rows[i].at(column));
    }
    ASSERT_EQ(stored, BalancesAfter(entries[i], entries)) << "entry " << entries[i].key;
  }
}

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

bool IsBelow(const std::string& code, const std::string& parent) {
  const auto same = [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); };
  return !parent.empty() && code.size() >= parent.size() &&
         std::equal(parent.begin(), parent.end(), code.begin(), same);
}

std::vector<std::string> EntryColumns() {
  std::istringstream names(kEntryColumns);
  std::vector<std::string> columns;
  for (std::string name; std::getline(names, name, ',');) columns.push_back(name);
  return columns;
}

std::vector<Variant> ValuesOf(const CLancamento& e) {
  return RowOf(e.Id(), e.DataId(), e.CodConta(), e.CodRecDesp(), e.CodCentroCusto(), e.IdParceiroComl(), e.Documento(),
               e.Valor(), e.ValorPago(), e.Data(), e.DataReferencia(), e.DataVencimento(), e.Historico(), e.Realizado(),
               e.Estorno(), e.Estornado(), e.Transferencia(), e.SaldoConta(), e.SaldoRecDesp(), e.SaldoGlobal(),
               e.SaldoCentroCusto(), e.SaldoParceiroComl(), e.IdUsuario(), e.IdConcorrencia());
}

std::vector<Row> RowsOf(db::Database& database, const std::string& table) {
  std::vector<Row> all;
  const auto rows = database.OpenRecordset("Select * From " + table);
  for (; !rows->EndOfFile(); rows->MoveNext()) {
    Row& row = all.emplace_back();
    for (std::size_t i = 0; i < rows->FieldCount(); ++i) row[rows->Fields(i).Name()] = rows->Fields(i).Value();
  }
  return all;
}

std::size_t ExpectSound(const Company& company) {
  const auto database = company.Open();
  const std::vector<Row> rows = RowsOf(*database, "Lancamentos");
  ExpectBalanced(rows);
  std::map<std::int32_t, Row> entries;
  for (const Row& row : rows) entries[ToLong(row.at("Id"))] = row;
  ExpectAsJournalled(entries, RowsOf(*database, kJournalInOrder), StoredSerial(*database));
  ExpectCounterparts(entries, RowsOf(*database, "Transferencias"));
  return rows.size();
}

std::int32_t Count(db::Database& database, std::string_view from) {
  return ToLong(database.OpenRecordset("SELECT Count(*) FROM " + std::string(from))->Fields(std::size_t{0}).Value());
}

std::int32_t StoredSerial(db::Database& database) {
  return ToLong(database.OpenRecordset("SELECT Serial FROM Serial")->Fields("Serial").Value());
}

}  // namespace tsv::test
