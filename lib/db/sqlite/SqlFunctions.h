#pragma once

#include "db/sqlite/Connection.h"

namespace tsv::db::sqlite {

// Gives the connection what the dialect writes: the value functions of Jet SQL ("jet_..."), conversions and arithmetic
// ("tsv_..."), aggregates, and the collations TSV_TEXTO (equality) and TSV_ORDEM (the language's order). What a
// function raises, its statement raises.
void RegisterFunctions(Connection& connection);

}  // namespace tsv::db::sqlite
