#pragma once

#include "db/Catalog.h"
#include "db/jet/TokenReader.h"

namespace tsv::db::jet {

// A column's type as declared: TEXT(n), LONG, BYTE, CURRENCY, DOUBLE, DATETIME, YESNO and their usual synonyms.
struct DeclaredType {
  ValueType type = ValueType::Text;
  int size = 0;
};

// An unknown type raises 3251.
DeclaredType ParseType(TokenReader& reader);

// What follows CREATE TABLE: name (column type [NOT NULL] [PRIMARY KEY | UNIQUE], ..., [CONSTRAINT n] PRIMARY KEY
// (...)).
Table ParseCreateTable(TokenReader& reader);

}  // namespace tsv::db::jet
