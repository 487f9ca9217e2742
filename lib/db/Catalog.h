#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "types/Variant.h"

// What a database holds, as the Jet SQL compiler and the engines see it.
namespace tsv::db {

// The type of a value in a statement. Decimal is an exact number written with a point (12.34, up to four decimals): it
// takes part in currency arithmetic exactly and shows itself to clients as a double.
enum class ValueType { Null, Boolean, Byte, Long, Decimal, Currency, Double, Date, Text };

struct Column {
  std::string name;
  ValueType type = ValueType::Text;
  int size = 0;                    // the most characters of a text; 0: no limit
  bool required = false;           // Null raises 3314
  bool allowZeroLength = false;    // otherwise '' raises 3315
  bool exact = false;              // a text compared to the letter: case, blanks and order by code point
  Variant defaultValue = Empty{};  // for inserts that do not name the column; Empty: Null
};

struct Index {
  std::vector<std::string> columns;
  bool unique = false;
};

struct ForeignKey {
  std::string column;
  std::string table;
  std::string referenced;
};

struct Table {
  std::string name;
  std::vector<Column> columns;
  std::vector<std::string> primaryKey;
  std::vector<Index> indexes;
  std::vector<ForeignKey> foreignKeys;

  const Column* Find(std::string_view column) const;  // without regard to case; nothing when there is none
};

class Catalog {
 public:
  void Add(Table table);                            // replaces one of the same name
  const Table* Find(std::string_view table) const;  // without regard to case; nothing when there is none

 private:
  struct FoldedLess {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
  };
  std::map<std::string, Table, FoldedLess> tables_;
};

}  // namespace tsv::db
