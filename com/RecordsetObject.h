#pragma once

#include <memory>

#include "ScriptObject.h"
#include "db/Recordset.h"

namespace tsv::com {

// The recordset as an automation object of DAO's shape. A recordset of the legacy engine is handed out as it is, for
// programs that are bound to that engine's own interfaces. The reference is the caller's.
IDispatch* NewRecordsetObject(std::shared_ptr<db::Recordset> recordset);

}  // namespace tsv::com
