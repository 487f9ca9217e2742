#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "db/jet/ExpressionBinder.h"

namespace tsv::db::jet {

struct Bound {
  Output columns;                                        // of a SELECT
  std::vector<std::pair<std::uint32_t, Variant>> fixed;  // literals that the SQL depends on
};

// Resolves the names of a statement against the catalogue, gives types to its expressions and expands its stars, in
// place. Raises 3061, 3063, 3073, 3078, 3079, 3085, 3122, 3127, 3346, 3464 and 3251 (not supported).
Bound Bind(Statement& statement, const Lexed& lexed, const Catalog& catalog);

}  // namespace tsv::db::jet
