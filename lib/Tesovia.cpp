#include "Tesovia.h"

#include "common/Engines.h"
#include "common/Errors.h"
#include "common/Literals.h"
#include "common/Recordsets.h"
#include "common/Session.h"
#include "common/Statement.h"
#include "db/EngineError.h"
#include "types/Conversions.h"

namespace tsv {

using namespace Module1;

namespace {

// Even a doubled apostrophe is refused: written as a pair and read as one, it would let a text log in that is not the
// stored one.
Literal CredentialLiteral(std::string_view value) {
  if (value.find('\'') != std::string_view::npos) db::Raise(db::EngineError::SyntaxInExpression);
  return TextLiteral(value);
}

}  // namespace

Tesovia::~Tesovia() {
  if (!SessionHasEnded()) FecharBanco(CurrentSession().BancoDeDados);
}

void Tesovia::InicializarTS(std::string_view CaminhoBancoDeDados, std::string_view IdUsuario,
                            std::string_view SenhaUsuario) {
  UnderHandler("em Tesovia_InicializarTS", [&] {
    Session& session = CurrentSession();
    FecharBanco(session.BancoDeDados);
    const auto banco = session.Engine.OpenDatabase(CaminhoBancoDeDados, false, false, kConnect);

    Statement login;
    login << "Select * From Usuarios where IdLogin=" << CredentialLiteral(IdUsuario)
          << " AND Senha=" << CredentialLiteral(SenhaUsuario);
    const ScopedRecordset user(banco->OpenRecordset(login.Text()));
    CompletarContagem(*user);
    // The engine may compare without regard to case; a password is right only to the letter.
    if (user->RecordCount() == 0 || VtoS(user->Fields("Senha").Value()) != SenhaUsuario) {
      GerarErro(TS_ERRO_LOGIN, "Informação de senha ou usuário incorreta.");
    }
    if (VtoB(user->Fields("Inativo").Value())) GerarErro(TS_ERRO_LOGIN, "Usuário desativado.");

    const std::int32_t id = ToLong(user->Fields("Id").Value());
    std::string name = ToText(user->Fields("DesUsuario").Value());
    session.CaminhoBancoDeDados = CaminhoBancoDeDados;
    session.IdUsuario = id;
    session.DesUsuario = std::move(name);
    session.BancoDeDados = banco;
  });
}

std::shared_ptr<db::Recordset> Tesovia::AbrirRecordsetTS(std::string_view SQL, db::RecordsetTypeEnum Tipo) {
  return UnderHandler("em Tesovia.AbrirRecordsetTS", [&] {
    auto recordset = BancoAberto()->OpenRecordset(SQL, Tipo, db::dbReadOnly);
    CompletarContagem(*recordset);
    return recordset;
  });
}

}  // namespace tsv
