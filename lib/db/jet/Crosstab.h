#pragma once

#include "db/jet/ExpressionBinder.h"

namespace tsv::db::jet {

// Turns TRANSFORM ... PIVOT into the grouped SELECT that it means: one aggregate over a condition for each column.
void ExpandCrosstab(Statement& statement, ExpressionBinder& binder);

}  // namespace tsv::db::jet
