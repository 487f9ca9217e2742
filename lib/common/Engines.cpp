#include "common/Engines.h"

#include "db/dao/JetFileDriver.h"
#include "db/postgres/ServerDriver.h"
#include "db/sqlite/CreateLedger.h"
#include "db/sqlite/LedgerDriver.h"

namespace tsv {

std::vector<std::unique_ptr<db::Driver>> AllDrivers() {
  std::vector<std::unique_ptr<db::Driver>> drivers;
  drivers.push_back(std::make_unique<db::postgres::ServerDriver>());
  drivers.push_back(std::make_unique<db::sqlite::LedgerDriver>());
  drivers.push_back(std::make_unique<db::dao::JetFileDriver>());  // opens the file itself, so after its owner
  return drivers;
}

bool EstaEmServidor(std::string_view path) { return db::postgres::ServerDriver().Recognises(path); }

void CriarBancoDeDados(std::string_view path) {
  if (EstaEmServidor(path)) {
    db::postgres::ServerDriver().Create(path, db::PasswordIn(kConnect));
  } else {
    db::sqlite::CreateLedger(path, db::PasswordIn(kConnect));
  }
}

void RemoverBancoDeDados(std::string_view path) {
  if (EstaEmServidor(path)) {
    db::postgres::ServerDriver().Remove(path);
  } else {
    db::sqlite::RemoveLedger(path);
  }
}

}  // namespace tsv
