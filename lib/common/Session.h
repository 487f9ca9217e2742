#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "common/Errors.h"
#include "common/Host.h"
#include "db/DBEngine.h"

namespace tsv {

// What all objects of the library share on one thread.
struct Session {
  Session();
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

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

// Whether the thread is past the end of its session: objects that outlive it have nothing left to close.
bool SessionHasEnded() noexcept;

namespace Module1 {

// The thread's open database; the error, TS_ERRO_NAO_INICIALIZADO for most operations, when there is none. Held by the
// caller while in use: a host that lets other code run in between may release it.
std::shared_ptr<db::Database> BancoAberto(TS_ERROS semBanco = TS_ERRO_NAO_INICIALIZADO);

}  // namespace Module1
}  // namespace tsv
