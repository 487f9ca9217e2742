#pragma once

#include <string_view>

#include "db/sqlite/Connection.h"

// A ledger's file: its mark, its version, its password and its settings.
namespace tsv::db::sqlite {

// Gives the connection our functions and rules: relationships hold, a commit survives a power cut, and nothing that a
// file may hold besides data is trusted. Touches no file.
void Prepare(Connection& connection);

// Fills an empty file: the schema, serial 0, and the type on which transfers are booked.
void FillNewLedger(Connection& connection, std::string_view password);

// Raises 3343 for a file that is not a ledger or comes from a newer version, 3031 for another password; then brings an
// older one up to date, unless it is only read.
void OpenLedger(Connection& connection, std::string_view path, std::string_view password, Connection::Access access);

}  // namespace tsv::db::sqlite
