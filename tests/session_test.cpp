#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "common/CDaoTrans.h"
#include "common/CHourGlass.h"
#include "common/MessageBox.h"
#include "db/EngineError.h"
#include "support/Company.h"
#include "support/TemporaryLedger.h"

using namespace tsv;
using namespace tsv::test;

namespace {

using SessionTest = LedgerTest;
using Strings = std::vector<std::string>;

constexpr const char* kNotInitialised = "Componente do Tesovia não inicializado.";
constexpr const char* kWrongLogin = "Informação de senha ou usuário incorreta.";
constexpr const char* kLoginOrigin = "em Tesovia_InicializarTS";

Posting AnyPosting() { return {Day(2008, 7, 5), Cents(1000), "1", "0"}; }

std::int32_t NumberOf(db::EngineError error) { return static_cast<std::int32_t>(error); }

TEST(FreshThread, OperationsNeedASession) {
  const std::pair<const char*, std::function<void(Tesovia&)>> operations[] = {
      {"em Tesovia.AbrirRecordsetTS",
       [](Tesovia& ledger) { ledger.AbrirRecordsetTS("Select * From Contas", db::dbOpenSnapshot); }},
      {"em Tesovia.FazerLancamentoTS ", [](Tesovia& ledger) { Post(ledger, AnyPosting()); }},
      {"em Tesovia.FazerTransferenciaTS", [](Tesovia& ledger) { ledger.FazerTransferenciaTS(CTransferencia()); }},
      {" Em Tesovia.ExcluirLancamentoTS", [](Tesovia& ledger) { ledger.ExcluirLancamentoTS(1, 0); }},
      {"em Tesovia.EstornarLancamentoTS", [](Tesovia& ledger) { ledger.EstornarLancamentoTS("x", 9, 0); }},
      {"em Tesovia.BaixarLancamentoTS",
       [](Tesovia& ledger) {
         CBaixa request;
         ledger.BaixarLancamentoTS(request);
       }},
  };
  for (const auto& [origin, run] : operations) {
    const bool reverses = std::string_view(origin).ends_with("EstornarLancamentoTS");
    OnAnotherThread([&, origin = origin, &run = run] {
      Tesovia ledger;
      ExpectErro(ErrorOf([&] { run(ledger); }), reverses ? TS_ERRO_ESTORNO : TS_ERRO_NAO_INICIALIZADO, kNotInitialised,
                 origin);
    });
  }
}

TEST(FreshThread, AnErrorTakesUpTheOriginOfTheLastOne) {
  OnAnotherThread([] {
    Tesovia tesovia;
    EXPECT_EQ(CurrentSession().ErrOrigem, "");
    CLancamento entry;
    EXPECT_EQ(ErrorOf([&] { entry.Realizado("x"); }).Origem(), "em CLancamento.Realizado");
    EXPECT_EQ(ErrorOf([&] { Post(tesovia, AnyPosting()); }).Origem(), "em CLancamento.Realizado");
    EXPECT_EQ(CurrentSession().ErrNumero, TS_ERRO_NAO_INICIALIZADO);
    EXPECT_EQ(CurrentSession().ErrDescricao, kNotInitialised);
    // Not raised by GerarErro: the routine's own origin replaces the old one.
    const Erro missing = ErrorOf([&] { tesovia.InicializarTS("/nonexistent/ledger.tsv", "ana", "segredo"); });
    EXPECT_EQ(missing.Numero(), NumberOf(db::EngineError::FileNotFound));
    EXPECT_EQ(missing.Origem(), kLoginOrigin);
    EXPECT_EQ(ErrorOf([&] { entry.Validar(); }).Origem(), kLoginOrigin);
    OnAnotherThread([] { EXPECT_EQ(CurrentSession().ErrNumero, 0); });
  });
}

TEST(FreshThread, ARoutineKeepsOnlyOriginsThatBeginWithItsPrefix) {
  using Module1::UnderHandler;
  const auto raise = [](const char* origin) { return [=] { throw Erro(5, "texto", origin); }; };
  const auto origin = [&](const char* inner, std::string_view prefix) {
    return ErrorOf([&] { UnderHandler("own", raise(inner), prefix); }).Origem();
  };
  EXPECT_EQ(origin("em Tesovia.BaixarTotal", "em "), "em Tesovia.BaixarTotal");
  EXPECT_EQ(origin("Em CLancamento.CarregarDeRegistro", "em "), "own");
  EXPECT_EQ(origin("em", "em "), "own");
  EXPECT_EQ(origin("", "em "), "own");
  EXPECT_EQ(origin("Em CLancamento.X", "Em "), "Em CLancamento.X");
  EXPECT_EQ(origin(" Em Tesovia.X", " Em "), "own");
  const auto foreign = [](auto exception) { return ErrorOf([&] { UnderHandler("em X", [&] { throw exception; }); }); };
  EXPECT_EQ(foreign(std::bad_alloc()).Numero(), 7);
  EXPECT_EQ(foreign(std::runtime_error("x")).Numero(), 51);
  EXPECT_EQ(foreign(1).Origem(), "em X");
}

TEST_F(SessionTest, ARefusedLoginLeavesNoSession) {
  struct Case {
    const char* login;
    const char* password;
    std::int32_t number;
    const char* description;  // of the library's own refusals
  };
  const std::int32_t syntax = NumberOf(db::EngineError::SyntaxInExpression);
  const Case cases[] = {
      {"ana", "errada", TS_ERRO_LOGIN, kWrongLogin},  {"eva", "segredo", TS_ERRO_LOGIN, kWrongLogin},
      {"ana", "SEGREDO", TS_ERRO_LOGIN, kWrongLogin}, {"ana", "segredo ", TS_ERRO_LOGIN, kWrongLogin},
      {"ana", "", TS_ERRO_LOGIN, kWrongLogin},        {"rui", "segredo", TS_ERRO_LOGIN, "Usuário desativado."},
      {"ana'", "segredo", syntax, nullptr},           {"' OR '1'='1", "' OR '1'='1", syntax, nullptr},
      {"ana''", "segredo", syntax, nullptr},          {"ana", "segredo''", syntax, nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.login) + "/" + c.password);
    OnAnotherThread([&] {
      Tesovia other;
      other.InicializarTS(company.Path(), "ana", "segredo");
      const Erro erro = ErrorOf([&] { other.InicializarTS(company.Path(), c.login, c.password); });
      EXPECT_EQ(erro.Numero(), c.number);
      EXPECT_TRUE(!c.description || erro.Descricao() == c.description) << erro;
      EXPECT_EQ(erro.Descricao().find("egredo"), std::string::npos);
      EXPECT_EQ(erro.Origem(), kLoginOrigin);
      EXPECT_EQ(ErrorOf([&] { test::Post(other, AnyPosting()); }).Numero(), TS_ERRO_NAO_INICIALIZADO);
      EXPECT_EQ(CurrentSession().DesUsuario, "ANA SOUZA");
    });
  }
  EXPECT_EQ(Post(AnyPosting())->Id(), 1);
}

TEST_F(SessionTest, LoginNamesIgnoreCaseAndMayRepeat) {
  company.Execute("INSERT INTO Usuarios (Id,IdLogin,Senha,Inativo,DesUsuario) VALUES (20,'ana','outra',False,'ANA 2')");
  company.Execute("INSERT INTO Usuarios (Id,IdLogin,Senha,Inativo,DesUsuario) VALUES (21,'ana','outra',False,'ANA 3')");
  tesovia.InicializarTS(company.Path(), "ANA", "outra");
  EXPECT_EQ(CurrentSession().IdUsuario, 20);
  EXPECT_EQ(CurrentSession().DesUsuario, "ANA 2");
  EXPECT_EQ(CurrentSession().CaminhoBancoDeDados, company.Path());
}

TEST_F(SessionTest, ReleasingAnyObjectEndsTheThreadsSession) {
  { Tesovia second; }
  EXPECT_EQ(ErrorOf([&] { Post(AnyPosting()); }).Numero(), TS_ERRO_NAO_INICIALIZADO);
  EXPECT_EQ(CurrentSession().IdUsuario, 7);
  tesovia.InicializarTS(company.Path(), "ana", "segredo");
  OnAnotherThread([] { Tesovia elsewhere; });
  EXPECT_EQ(Post(AnyPosting())->Id(), 1);
}

TEST_F(SessionTest, ADatabaseOfAnotherPasswordIsRefused) {
  const TemporaryLedger other;
  const Erro erro = ErrorOf([&] { tesovia.InicializarTS(other.Path(), "ana", "segredo"); });
  EXPECT_EQ(erro.Numero(), NumberOf(db::EngineError::WrongPassword));
  EXPECT_EQ(erro.Origem(), kLoginOrigin);
}

TEST_F(SessionTest, ClientsOnlyRead) {
  const auto accounts = tesovia.AbrirRecordsetTS("Select Codigo From Contas Order By Codigo", db::dbOpenDynaset);
  EXPECT_EQ(accounts->RecordCount(), 10);
  EXPECT_EQ(accounts->Fields("Codigo").Value(), Variant(std::string("1")));
  const auto none = tesovia.AbrirRecordsetTS("Select * From Lancamentos", db::dbOpenSnapshot);
  EXPECT_EQ(none->RecordCount(), 0);
  EXPECT_TRUE(none->EndOfFile());
  const auto forward = tesovia.AbrirRecordsetTS("Select Codigo From Contas Order By Codigo", db::dbOpenForwardOnly);
  EXPECT_EQ(forward->Fields("Codigo").Value(), Variant(std::string("1")));

  const Erro erro = ErrorOf([&] { tesovia.AbrirRecordsetTS("Delete From Contas", db::dbOpenDynaset); });
  EXPECT_EQ(erro.Numero(), NumberOf(db::EngineError::InvalidOperation));
  EXPECT_EQ(erro.Origem(), "em Tesovia.AbrirRecordsetTS");
  EXPECT_EQ(tesovia.AbrirRecordsetTS("Select * From Contas", db::dbOpenSnapshot)->RecordCount(), 10);
}

TEST_F(SessionTest, TheTransactionGuardUndoesWhatIsLeftOpen) {
  Watch();
  { CDaoTrans().RollBack(); }
  EXPECT_EQ(recorder->Texts(), Strings());
  {
    CDaoTrans guard;
    guard.BegTrans();
    guard.BegTrans();
  }
  EXPECT_EQ(recorder->Texts(), (Strings{"BeginTrans", "BeginTrans", "Rollback", "Rollback"}));
  recorder->ran.clear();
  {
    CDaoTrans guard;
    guard.BegTrans();
    guard.ComTrans();
    guard.RollBack();
    const Erro erro = ErrorOf([&] { guard.ComTrans(); });
    EXPECT_EQ(erro.Numero(), NumberOf(db::EngineError::NoTransaction));
    EXPECT_EQ(erro.Origem(), "em CDaoTrans_ComTrans");
  }
  EXPECT_EQ(recorder->Texts(), (Strings{"BeginTrans", "CommitTrans"}));
}

TEST_F(SessionTest, TheBusyCursorDropsPendingInput) {
  { CHourGlass busy; }
  EXPECT_EQ(host->events, (Strings{"busy", "discard", "normal"}));
  host->events.clear();
  {
    CHourGlass busy;
    busy.Show(false);
  }
  EXPECT_EQ(host->events, (Strings{"busy", "normal"}));
}

TEST_F(SessionTest, TheMessageBoxGivesThePointerBack) {
  EXPECT_EQ(Module1::MsgBox("Aviso"), Host::kOk);
  EXPECT_EQ(host->events, (Strings{"pointer 0", "box 0 [] Aviso", "pointer 2"}));
  host->onBox = [] { throw Erro(5, "sem tela"); };
  ExpectErro(ErrorOf([] { Module1::MsgBox("Aviso"); }), 5, "sem tela", "em Tesovia_MsgBox");
}

}  // namespace
