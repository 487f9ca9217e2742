#pragma once

#include <memory>

#include "db/StoredQueries.h"
#include "db/jet/CompilingDatabase.h"
#include "db/sqlite/Balances.h"

namespace tsv::db::sqlite {

std::shared_ptr<Recordset> Answer(const StoredQuery& query, Balances& balances, const jet::Parameters& parameters);

}  // namespace tsv::db::sqlite
