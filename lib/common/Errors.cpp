#include "common/Errors.h"

#include <new>
#include <string>

#include "common/Session.h"

namespace tsv::Module1 {

Erro CaughtError() {
  try {
    throw;
  } catch (const Erro& erro) {
    return erro;
  } catch (const std::bad_alloc&) {
    return Erro(static_cast<std::int32_t>(RuntimeError::OutOfMemory), TextOf(RuntimeError::OutOfMemory));
  } catch (...) {
    return Erro(static_cast<std::int32_t>(RuntimeError::Internal), TextOf(RuntimeError::Internal));
  }
}

void GerarErro(std::int32_t numero, std::string_view descricao) {
  Session& session = CurrentSession();
  session.ErrNumero = numero;
  session.ErrDescricao = descricao;
  throw Erro(session.ErrNumero, session.ErrDescricao, session.ErrOrigem);
}

void RaiseAgain(std::string_view origin, std::string_view prefix) {
  const Erro erro = CaughtError();
  Session& session = CurrentSession();
  session.ErrNumero = erro.Numero();
  session.ErrDescricao = erro.Descricao();
  const bool carriesOrigin = std::string_view(erro.Origem()).substr(0, 3) == prefix;
  session.ErrOrigem = carriesOrigin ? std::string_view(erro.Origem()) : origin;
  throw Erro(session.ErrNumero, session.ErrDescricao, session.ErrOrigem);
}

}  // namespace tsv::Module1
