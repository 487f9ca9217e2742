#pragma once

#include <string>

#include "db/Catalog.h"
#include "db/sqlite/Connection.h"

// Tables as SQLite keeps them. The file describes itself: a table of its own holds every column's type.
namespace tsv::db::sqlite {

void CreateColumnCatalog(Connection& connection);

// Makes the table, its indexes and its entries in the column catalogue; a name in use raises 3010. The caller's
// transaction makes it one step.
void CreateTable(Connection& connection, const Table& table);

// Tables with their columns and primary keys; defaults, indexes and relationships are SQLite's own business.
Catalog LoadCatalog(Connection& connection);

}  // namespace tsv::db::sqlite
