#pragma once

#include "db/Catalog.h"
#include "db/postgres/libpq/Connection.h"

// Tables as the server keeps them, all in the schema "tesovia". It describes itself: a table of its own holds every
// column's type.
namespace tsv::db::postgres {

void CreateColumnCatalog(Connection& connection);

// Makes the table, its indexes and its entries in the column catalogue; a name in use raises 3010. The caller's
// transaction makes it one step.
void CreateTable(Connection& connection, const Table& table);

// Tables with their columns and primary keys; defaults, indexes and relationships are the server's own business.
Catalog LoadCatalog(Connection& connection);

}  // namespace tsv::db::postgres
