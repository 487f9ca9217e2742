#include "Context.h"

#include "Password.h"
#include "common/Errors.h"
#include "common/Session.h"

namespace tsv::cli {

void Context::Begin() {
  CurrentSession().host = host_;
  if (!rastrear.empty()) {
    trace_ = std::make_shared<Trace>(rastrear);
    CurrentSession().Engine.Observe(trace_);
  }
}

const std::string& Context::Path() const {
  if (arquivo.empty()) throw Failure(kUsage, "Informe o livro com -a ARQUIVO ou na variável TESOVIA_ARQUIVO.");
  return arquivo;
}

Tesovia& Context::Login() {
  Path();
  if (usuario.empty()) throw Failure(kUsage, "Informe o usuário com -u LOGIN ou na variável TESOVIA_USUARIO.");
  const std::string password = GivenPassword("TESOVIA_SENHA", "Senha de " + usuario);
  Hide(password);
  if ((usuario + password).find('\'') != std::string::npos) {
    throw Failure(kLoginRefused, "Informação de senha ou usuário incorreta: apóstrofos não são permitidos.");
  }
  tesovia_ = std::make_unique<Tesovia>();
  try {
    tesovia_->InicializarTS(arquivo, usuario, password);
  } catch (const Erro& erro) {
    if (erro.Numero() != TS_ERRO_LOGIN) throw;
    throw Failure(kLoginRefused, erro.Descricao());
  }
  return *tesovia_;
}

void Context::Hide(std::string_view secret) {
  if (trace_) trace_->Hide(secret);
}

}  // namespace tsv::cli
