#pragma once

#include "db/Catalog.h"
#include "db/Recordset.h"

namespace tsv::db {

DataTypeEnum DataTypeOf(ValueType type) noexcept;  // as clients see a column of the type
ValueType ValueTypeOf(DataTypeEnum type);          // of a table's column; 3343 for a number that is no type

}  // namespace tsv::db
