#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "common/Host.h"
#include "db/DBEngine.h"

namespace tsv {

// What all objects of the library share on one thread.
struct Session {
  Session();

  std::shared_ptr<db::Database> BancoDeDados;  // none: not initialised
  std::string CaminhoBancoDeDados;             // as given by the client
  std::int32_t IdUsuario = 0;
  std::string DesUsuario;
  db::DBEngine Engine;
  std::shared_ptr<Host> host;  // never none

  // The last error that a routine passed on. Never cleared: an error raised by GerarErro takes up the last origin.
  std::int32_t ErrNumero = 0;
  std::string ErrDescricao;
  std::string ErrOrigem;
};

Session& CurrentSession();

namespace Module1 {

// Raises TS_ERRO_NAO_INICIALIZADO when the thread has no open database.
void ExigirBancoAberto();

}  // namespace Module1
}  // namespace tsv
