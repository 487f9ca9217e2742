#include "db/postgres/ServerDriver.h"

#include "db/EngineError.h"

namespace tsv::db::postgres {

bool ServerDriver::Recognises(std::string_view path) const {
  return path.starts_with("postgresql://") || path.starts_with("postgres://");
}

// The address is not repeated: it may hold a password.
std::shared_ptr<Database> ServerDriver::Open(std::string_view /*path*/, bool /*exclusive*/, bool /*readOnly*/,
                                             std::string_view /*connect*/) const {
  throw Erro(static_cast<std::int32_t>(EngineError::CannotOpen),
             "Não é possível abrir o banco de dados: esta instalação não tem o mecanismo de servidor.");
}

}  // namespace tsv::db::postgres
