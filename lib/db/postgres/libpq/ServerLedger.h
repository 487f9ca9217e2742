#pragma once

#include <string_view>

#include "db/postgres/libpq/Connection.h"

// A ledger in a database of a server: its schema, its version, its password and its settings.
namespace tsv::db::postgres {

// Makes the schema with its tables, functions and stored queries, all or nothing: serial 0, and the type on which
// transfers are booked. One that is there already raises 3204; a database that is not in UTF-8, 3343.
void FillNewLedger(Connection& connection, std::string_view password);

void RemoveLedger(Connection& connection);

// Raises 3343 for a database without a ledger or with a newer one, 3031 for another password.
void VerifyLedger(Connection& connection, std::string_view password);

}  // namespace tsv::db::postgres
