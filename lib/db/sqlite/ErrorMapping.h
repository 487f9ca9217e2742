#pragma once

#include <sqlite3.h>

#include <string>
#include <string_view>

#include "db/EngineError.h"
#include "types/Erro.h"

namespace tsv::db::sqlite {

// The error of the connection's last call, which returned the extended code. statement: the one that failed, if any.
Erro ErrorOf(sqlite3* handle, int code, sqlite3_stmt* statement);

}  // namespace tsv::db::sqlite
