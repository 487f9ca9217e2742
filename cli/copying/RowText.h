#pragma once

#include <cstdint>
#include <string>

#include "db/Recordset.h"

// Rows of one ledger on their way into another.
namespace tsv::cli {

// The values of the current row as the literals of an INSERT, exact: four decimals, the time of day, every character.
std::string LiteralsOf(const db::Recordset& row);

// What a table holds, whatever the order of its rows: equal for equal tables, and as good as never for others.
struct TableDigest {
  std::int64_t rows = 0;
  std::uint64_t sum = 0;

  void Add(const std::string& literals);
  friend bool operator==(const TableDigest&, const TableDigest&) = default;
};

}  // namespace tsv::cli
