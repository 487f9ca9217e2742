#pragma once

#include <libpq-fe.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "types/Erro.h"

namespace tsv::db::postgres {

// The error that a statement's failed result stands for. place: the server, for messages.
Erro ErrorOf(const PGresult* result, std::string_view sql, std::string_view place);

// Why the connection could not be made: 3151 with the server's reason, which holds no password.
Erro ConnectionError(const PGconn* connection);

// Whether the server ends the session, whatever was asked.
bool IsShutdown(const PGresult* result) noexcept;

}  // namespace tsv::db::postgres
