#include "common/Session.h"

#include "common/Engines.h"
#include "common/Errors.h"

namespace tsv {

Session::Session() : Engine(AllDrivers()), host(std::make_shared<Host>()) {}

Session& CurrentSession() {
  thread_local Session session;
  return session;
}

void Module1::ExigirBancoAberto() {
  if (!CurrentSession().BancoDeDados) {
    GerarErro(TS_ERRO_NAO_INICIALIZADO, "Componente do Tesovia não inicializado.");
  }
}

}  // namespace tsv
