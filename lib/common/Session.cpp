#include "common/Session.h"

#include "common/Engines.h"

namespace tsv {

namespace {

// Has no destructor, so it can still be read when the session cannot.
thread_local bool sessionHasEnded = false;

}  // namespace

Session::Session() : Engine(AllDrivers()), host(std::make_shared<Host>()) {}

Session::~Session() { sessionHasEnded = true; }

bool SessionHasEnded() noexcept { return sessionHasEnded; }

Session& CurrentSession() {
  thread_local Session session;
  return session;
}

std::shared_ptr<db::Database> Module1::BancoAberto(TS_ERROS semBanco) {
  const std::shared_ptr<db::Database>& banco = CurrentSession().BancoDeDados;
  if (!banco) GerarErro(semBanco, "Componente do Tesovia não inicializado.");
  return banco;
}

}  // namespace tsv
