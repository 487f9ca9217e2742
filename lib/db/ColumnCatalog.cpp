#include "db/ColumnCatalog.h"

#include <algorithm>
#include <utility>

#include "db/EngineError.h"
#include "types/Text.h"

namespace tsv::db {

std::size_t KeyPlaceOf(const Table& table, const Column& column) {
  const auto& key = table.primaryKey;
  const auto place = std::find_if(key.begin(), key.end(),
                                  [&](const std::string& part) { return text::CompareFolded(part, column.name) == 0; });
  return place == key.end() ? 0 : static_cast<std::size_t>(place - key.begin()) + 1;
}

void CatalogBuilder::Add(ColumnRow row) {
  if (table_.name != row.table) FinishTable();
  table_.name = std::move(row.table);
  if (row.keyPlace > 0) {
    table_.primaryKey.resize(std::max(table_.primaryKey.size(), row.keyPlace));
    table_.primaryKey[row.keyPlace - 1] = row.column.name;
  }
  table_.columns.push_back(std::move(row.column));
}

void CatalogBuilder::FinishTable() {
  if (!table_.columns.empty()) catalog_.Add(std::move(table_));
  table_ = {};
}

Catalog CatalogBuilder::Finish() {
  FinishTable();
  return std::move(catalog_);
}

const Column& ColumnOf(const Table& table, const std::string& name) {
  const Column* column = table.Find(name);
  if (!column) Raise(EngineError::ItemNotFound, name);
  return *column;
}

std::string QuotedText(const std::string& text) {
  std::string literal = "'";
  for (const char c : text) literal.append(c == '\'' ? 2 : 1, c);
  return literal + "'";
}

std::string RuleName(std::int32_t number, const Table& table, const Column& column) {
  return std::to_string(number) + " " + table.name + "." + column.name;
}

}  // namespace tsv::db
