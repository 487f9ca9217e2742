#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "db/Catalog.h"

// What the engines that keep their own catalogue of columns have in common.
namespace tsv::db {

// One row of such a catalogue: a column, and its place in the primary key, from 1; 0 when it is no part of it.
struct ColumnRow {
  std::string table;
  Column column;
  std::size_t keyPlace = 0;
};
std::size_t KeyPlaceOf(const Table& table, const Column& column);

// Builds a catalogue from rows in the order of tables and columns.
class CatalogBuilder {
 public:
  void Add(ColumnRow row);
  Catalog Finish();

 private:
  void FinishTable();

  Catalog catalog_;
  Table table_;
};

const Column& ColumnOf(const Table& table, const std::string& name);  // 3265 when there is none

// A text as a literal of SQL.
std::string QuotedText(const std::string& text);

// The name of a rule tells the error that it stands for, and its field: "3163 Contas.Codigo".
std::string RuleName(std::int32_t number, const Table& table, const Column& column);

}  // namespace tsv::db
