#pragma once

#include <string_view>

namespace tsv::db::sqlite {

// Makes a new ledger file. What exists at the path is never touched: 3204. A folder that does not exist: 3044; one
// that may not be written: 3051. On any failure no file is left behind.
// The file gets its name when it is complete: a process that dies before leaves only a draft ("*.novo") beside it.
void CreateLedger(std::string_view path, std::string_view password);

// Removes a ledger file and what SQLite keeps beside it. Nobody may have it open.
void RemoveLedger(std::string_view path);

}  // namespace tsv::db::sqlite
