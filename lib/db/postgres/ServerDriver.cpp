#include "db/postgres/ServerDriver.h"

#include "db/EngineError.h"
#ifdef TSV_LIBPQ
#include "db/postgres/libpq/Connection.h"
#include "db/postgres/libpq/ServerDatabase.h"
#include "db/postgres/libpq/ServerLedger.h"
#endif

namespace tsv::db::postgres {

bool ServerDriver::Recognises(std::string_view path) const {
  return path.starts_with("postgresql://") || path.starts_with("postgres://");
}

#ifdef TSV_LIBPQ

std::shared_ptr<Database> ServerDriver::Open(std::string_view path, bool exclusive, bool readOnly,
                                             std::string_view connect) const {
  if (exclusive) Raise(EngineError::Unsupported, "uso exclusivo de um banco de dados em servidor");
  auto connection = std::make_shared<Connection>(path, patience_);
  VerifyLedger(*connection, PasswordIn(connect));
  return std::make_shared<ServerDatabase>(std::move(connection), readOnly);
}

void ServerDriver::Create(std::string_view path, std::string_view password) const {
  Connection connection(path, patience_);
  FillNewLedger(connection, password);
}

void ServerDriver::Remove(std::string_view path) const {
  Connection connection(path, patience_);
  RemoveLedger(connection);
}

#else

namespace {

// The address is not repeated: it may hold a password.
[[noreturn]] void RefuseWithoutEngine() {
  throw Erro(static_cast<std::int32_t>(EngineError::CannotOpen),
             "Não é possível abrir o banco de dados: esta instalação não tem o mecanismo de servidor.");
}

}  // namespace

std::shared_ptr<Database> ServerDriver::Open(std::string_view /*path*/, bool /*exclusive*/, bool /*readOnly*/,
                                             std::string_view /*connect*/) const {
  RefuseWithoutEngine();
}

void ServerDriver::Create(std::string_view /*path*/, std::string_view /*password*/) const { RefuseWithoutEngine(); }

void ServerDriver::Remove(std::string_view /*path*/) const { RefuseWithoutEngine(); }

#endif

}  // namespace tsv::db::postgres
