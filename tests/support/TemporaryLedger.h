#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "db/DBEngine.h"
#include "db/dao/JetFileDriver.h"
#include "db/postgres/ServerDriver.h"
#include "db/sqlite/CreateLedger.h"
#include "db/sqlite/LedgerDriver.h"
#include "support/LedgerPlace.h"

namespace tsv::test {

// An engine that has one database open, as each user's program has.
struct User {
  db::DBEngine engine;
  std::shared_ptr<db::Database> database;

  db::Workspace& Workspace() { return engine.Workspaces(0); }
  void Execute(std::string_view sql) { database->Execute(sql, db::dbFailOnError); }
  std::shared_ptr<db::Recordset> Open(std::string_view sql, db::RecordsetTypeEnum type = db::dbOpenSnapshot) {
    return database->OpenRecordset(sql, type);
  }
  Variant Value(std::string_view sql) { return Open(sql)->Fields(std::size_t{0}).Value(); }
};

inline db::DBEngine MakeEngine(std::chrono::milliseconds patience = std::chrono::seconds(10)) {
  std::vector<std::unique_ptr<db::Driver>> drivers;
  drivers.push_back(std::make_unique<db::postgres::ServerDriver>(patience));
  drivers.push_back(std::make_unique<db::sqlite::LedgerDriver>(patience));
  drivers.push_back(std::make_unique<db::dao::JetFileDriver>());
  return db::DBEngine(std::move(drivers));
}

// A new ledger in a place of its own. It needs no session: users open it themselves.
class TemporaryLedger : public LedgerPlace {
 public:
  static constexpr std::string_view kConnect = "MS Access;PWD=segredo";

  TemporaryLedger() {
    if (OnServer()) {
      db::postgres::ServerDriver().Create(Path(), "segredo");
    } else {
      db::sqlite::CreateLedger(Path(), "segredo");
    }
  }

  User Open(std::chrono::milliseconds patience = std::chrono::seconds(10)) const {
    User user{MakeEngine(patience), nullptr};
    user.database = user.engine.OpenDatabase(Path(), false, false, kConnect);
    return user;
  }
};

// Masters that entries can name; ids are given in order from the first.
inline void InsertCodes(User& user, std::string_view table, const std::vector<std::string>& codes, int firstId = 1) {
  for (const std::string& code : codes) {
    user.Execute("INSERT INTO " + std::string(table) + " (Id, Codigo) VALUES (" + std::to_string(firstId++) + ", '" +
                 code + "')");
  }
}

inline void InsertPartners(User& user, int count) {
  for (int id = 1; id <= count; ++id) {
    user.Execute("INSERT INTO ParceirosComerciais (Id, Nome) VALUES (" + std::to_string(id) + ", 'PARCEIRO')");
  }
}

}  // namespace tsv::test
