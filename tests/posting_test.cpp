#include <gtest/gtest.h>

#include "Loading.h"
#include "db/EngineError.h"
#include "support/Ledger.h"
#include "types/Conversions.h"

using namespace tsv;
using namespace tsv::test;

namespace {

using Strings = std::vector<std::string>;

constexpr const char* kOrigin = "em Tesovia.FazerLancamentoTS ";
constexpr const char* kEntryBox =
    "box 0 [] Não foi possível incluir o lançamento.\n"
    "Possível causa: a conta, receita/despesa, centro de custo/lucro ou cliente/fornecedor foi desativado.";

class PostingTest : public LedgerTest {
 protected:
  std::int32_t Entries() { return Count(*CurrentSession().BancoDeDados, "Lancamentos"); }
};

TEST_F(PostingTest, StatementsOfAPlainEntry) {
  Watch();
  const auto entry = Post({Day(2008, 7, 5), Cents(-1250), "1.1", "0"});
  const Strings expected = {
      "Select Tipo From TiposMovimentacoes Where Codigo='0'",
      "ParQrySerialESaldos",
      "BeginTrans",
      "UPDATE Serial Set Serial = Serial + 1 where Serial = 0",
      "INSERT INTO LANCAMENTOS Select 1 As Id, '1.1' As CodConta,'0' As CodRecDesp, NULL As CodCentroCusto, "
      "NULL As IdParceiroComl, NULL As Documento,-12.50 As Valor,#07/05/2008 00:00:00# As Data,"
      "#07/01/2008 00:00:00# As DataReferencia,#07/05/2008 00:00:00# As DataVencimento,'LANÇAMENTO' As Historico,"
      "'20080705000000001' As DataId,-12.50 As SaldoGlobal,-12.50 As SaldoConta, -12.50 As SaldoRecDesp, "
      "0.00 As SaldoCentroCusto, 0.00 As SaldoParceiroComl, 7 As IdUsuario,'?' As Realizado, 0 as IdConcorrencia "
      "FROM Contas As C, TiposMovimentacoes As T  WHERE C.Codigo = '1.1' AND C.Inativa = False AND C.Excluida=False "
      "AND T.Codigo = '0' AND T.Inativo = False AND T.Excluido=False AND Len(C.Codigo) * 0 = Len(T.Codigo) * 0 ",
      "INSERT INTO HISTORICOSDELANCAMENTOS Select #07/04/2008 18:05:09# AS DataHora,1 As IdAcao,1 As Id, "
      "'1.1' As CodConta, C.DesConta,'0' As CodRecDesp,T.DesMovimentacao, NULL As CodCentroCusto, "
      "NULL As DesCentroDeCusto,NULL As IdParceiroComl,NULL As NomeParceiro,NULL As Filial,NULL As Documento,"
      "-12.50 As Valor,#07/05/2008 00:00:00# As Data,#07/01/2008 00:00:00# As DataReferencia,"
      "#07/05/2008 00:00:00# As DataVencimento,'LANÇAMENTO' As Historico,'20080705000000001' As DataId,"
      "-12.50 As SaldoGlobal,-12.50 As SaldoConta, -12.50 As SaldoRecDesp, 7 As IdUsuario,'ANA SOUZA' As DesUsuario,"
      "'?' As Realizado FROM Contas As C , TiposMovimentacoes As T  WHERE C.Codigo = '1.1' AND C.Inativa = False "
      "AND C.Excluida=False AND T.Codigo = '0' AND T.Inativo = False AND T.Excluido=False "
      "AND Len(C.Codigo) * 0 = Len(T.Codigo) * 0 ",
      "UPDATE Lancamentos Set SaldoConta = SaldoConta + Abs('1.1' LIKE CodConta & '*') * -12.50, "
      "SaldoRecDesp = SaldoRecDesp + Abs('0' LIKE CodRecDesp & '*') * -12.50, SaldoGlobal = SaldoGlobal + -12.50 "
      "where DataId > '20080705000000001'",
      "ParQryLastSaldosByDataId",
      "CommitTrans",
  };
  EXPECT_EQ(recorder->Texts(), expected);
  EXPECT_EQ(host->events, (Strings{"busy", "discard", "normal"}));

  EXPECT_EQ(entry->Id(), 1);
  EXPECT_EQ(entry->Historico(), "LANÇAMENTO");
  EXPECT_EQ(entry->Realizado(), "?");
  EXPECT_EQ(entry->IdConcorrencia(), 0);
  EXPECT_EQ(entry->DataId(), "20080705000000001");
}

TEST_F(PostingTest, StatementsWithCostCentreAndPartner) {
  Post({Day(2008, 7, 5), Cents(100), "1.1", "0", "1", 1});
  Watch();
  Post(
      {Date::FromCivil({2008, 7, 6, 14, 30, 15}), Cents(123450), " 1.1.2 ", "00", " 1.10", 1, "recebimento", " NF 1 "});
  const Strings texts = recorder->Texts();
  ASSERT_EQ(texts.size(), 9u);
  EXPECT_EQ(
      texts[4],
      "INSERT INTO LANCAMENTOS Select 2 As Id, '1.1.2' As CodConta,'00' As CodRecDesp, '1.10' As CodCentroCusto, "
      "1 As IdParceiroComl, 'NF 1' As Documento,1234.50 As Valor,#07/06/2008 14:30:15# As Data,"
      "#07/01/2008 00:00:00# As DataReferencia,#07/06/2008 14:30:15# As DataVencimento,'RECEBIMENTO' As Historico,"
      "'20080706000000002' As DataId,1235.50 As SaldoGlobal,1234.50 As SaldoConta, 1234.50 As SaldoRecDesp, "
      "1234.50 As SaldoCentroCusto, 1235.50 As SaldoParceiroComl, 7 As IdUsuario,'?' As Realizado, "
      "0 as IdConcorrencia FROM Contas As C, TiposMovimentacoes As T , CentrosDeCusto As U"
      ", ParceirosComerciais As P WHERE C.Codigo = '1.1.2' AND C.Inativa = False AND C.Excluida=False "
      "AND T.Codigo = '00' AND T.Inativo = False AND T.Excluido=False AND Len(C.Codigo) * 0 = Len(T.Codigo) * 0 "
      " AND U.Codigo = '1.10' AND U.Inativo = False AND U.Excluido=False "
      "AND Len(T.Codigo) * 0 = Len(U.Codigo) * 0  AND P.Id = 1 AND P.Inativo = False "
      "AND Len(T.Codigo) * 0 = P.Id * 0");
  EXPECT_EQ(
      texts[5],
      "INSERT INTO HISTORICOSDELANCAMENTOS Select #07/04/2008 18:05:09# AS DataHora,1 As IdAcao,2 As Id, "
      "'1.1.2' As CodConta, C.DesConta,'00' As CodRecDesp,T.DesMovimentacao, '1.10' As CodCentroCusto, "
      "U.DesCentroDeCusto As DesCentroDeCusto,1 As IdParceiroComl,P.Nome As NomeParceiro,P.Filial As Filial,"
      "'NF 1' As Documento,1234.50 As Valor,#07/06/2008 14:30:15# As Data,"
      "#07/01/2008 00:00:00# As DataReferencia,#07/06/2008 14:30:15# As DataVencimento,'RECEBIMENTO' As Historico,"
      "'20080706000000002' As DataId,1235.50 As SaldoGlobal,1234.50 As SaldoConta, 1234.50 As SaldoRecDesp, "
      "7 As IdUsuario,'ANA SOUZA' As DesUsuario,'?' As Realizado FROM Contas As C , TiposMovimentacoes As T "
      ", CentrosDeCusto As U, ParceirosComerciais As P WHERE C.Codigo = '1.1.2' AND C.Inativa = False "
      "AND C.Excluida=False AND T.Codigo = '00' AND T.Inativo = False AND T.Excluido=False "
      "AND Len(C.Codigo) * 0 = Len(T.Codigo) * 0  AND U.Codigo = '1.10' AND U.Inativo = False "
      "AND U.Excluido=False AND Len(T.Codigo) * 0 = Len(U.Codigo) * 0  AND P.Id = 1 AND P.Inativo = False "
      "AND Len(T.Codigo) * 0 = P.Id * 0");
  EXPECT_EQ(
      texts[6],
      "UPDATE Lancamentos Set SaldoConta = SaldoConta + Abs('1.1.2' LIKE CodConta & '*') * 1234.50, "
      "SaldoRecDesp = SaldoRecDesp + Abs('00' LIKE CodRecDesp & '*') * 1234.50, "
      "SaldoCentroCusto = SaldoCentroCusto + Abs(Not CodCentroCusto Is NULL AND '1.10' LIKE CodCentroCusto & '*') "
      "* 1234.50, SaldoParceiroComl = SaldoParceiroComl + Abs(Not IdParceiroComl Is NULL And 1 = IdParceiroComl) "
      "* 1234.50, SaldoGlobal = SaldoGlobal + 1234.50 where DataId > '20080706000000002'");
}

TEST_F(PostingTest, ABackDatedEntryRaisesTheLaterBalancesThatHoldIt) {
  for (const char* account : {"1", "1.1", "1.2", "1.1.2", "1.1.2.5"}) {
    Post({Day(2008, 7, 20), Cents(100), account, "0", account == std::string("1.1") ? "" : "1", 1});
  }
  const auto entry = Post({Day(2008, 7, 10), Cents(1000), "1.1.2", "00", "1.1", 2});
  EXPECT_EQ(entry->SaldoGlobal(), Cents(1000));
  const auto database = company.Open();
  const std::vector<Entry> rows = ReadEntries(*database);
  ASSERT_EQ(rows.size(), 6u);
  const std::int64_t accounts[] = {1100, 1100, 100, 1100, 100};
  const std::int64_t centres[] = {1100, 0, 1200, 1300, 1400};  // the second row has none
  for (std::size_t i = 0; i < 5; ++i) {
    const std::array<Currency, 5>& balances = rows[i + 1].balances;
    const std::int64_t before = 100 * (static_cast<std::int64_t>(i) + 1);
    EXPECT_EQ(balances[0], Cents(accounts[i])) << i;
    EXPECT_EQ(balances[1], Cents(before + 1000)) << i;
    EXPECT_EQ(balances[2], Cents(centres[i])) << i;
    EXPECT_EQ(balances[3], Cents(before)) << i;  // another partner's
    EXPECT_EQ(balances[4], Cents(before + 1000)) << i;
  }
  ExpectSound(company);
}

TEST_F(PostingTest, EntriesOfADayStandAsPosted) {
  EXPECT_EQ(Post({Date::FromCivil({2008, 7, 5, 23, 0, 0}), Cents(1), "1", "0"})->DataId(), "20080705000000001");
  EXPECT_EQ(Post({Date::FromCivil({2008, 7, 5, 1, 0, 0}), Cents(2), "1", "0"})->DataId(), "20080705000000002");
  EXPECT_EQ(ExpectSound(company), 2u);
}

TEST_F(PostingTest, TheJournalDescribesTheEntry) {
  Post({Day(2008, 7, 5), Cents(100), "1.1", "0", "1.1", 2, "venda", "D1"});
  const auto row = tesovia.AbrirRecordsetTS("Select * From HistoricosDeLancamentos", db::dbOpenSnapshot);
  ASSERT_EQ(row->RecordCount(), 1);
  const auto text = [&](std::string_view column) { return ToText(row->Fields(column).Value()); };
  EXPECT_EQ(text("DesUsuario"), "ANA SOUZA");
  EXPECT_EQ(text("DesConta"), "CONTA 1.1");
  EXPECT_EQ(text("DesMovimentacao"), "TIPO 0");
  EXPECT_EQ(text("DesCentroDeCusto"), "CENTRO 1.1");
  EXPECT_EQ(text("NomeParceiro"), "OFICINA");
  EXPECT_EQ(text("Filial"), "SUL");
  EXPECT_EQ(text("Historico"), "VENDA");
  EXPECT_EQ(row->Fields("DataHora").Value(), Variant(host->Now()));
  for (const char* column : {"SaldoCentroCusto", "SaldoParceiroComl", "ValorPago"}) {
    EXPECT_TRUE(IsNull(row->Fields(column).Value())) << column;
  }
}

TEST_F(PostingTest, LoadingGivesTheEntryBack) {
  const auto posted = Post({Date::FromCivil({2008, 7, 5, 9, 8, 7}), Cents(100), "1.1", "0", "1", 1, "venda", "D1"});
  const auto loaded = internal::CarregarLancamentoTS(posted->Id());
  EXPECT_EQ(loaded->Data(), posted->Data());
  EXPECT_EQ(loaded->DataReferencia(), posted->DataReferencia());
  EXPECT_EQ(loaded->DataVencimento(), posted->DataVencimento());
  EXPECT_EQ(loaded->DataId(), posted->DataId());
  EXPECT_EQ(loaded->Historico(), posted->Historico());
  EXPECT_EQ(loaded->Documento(), posted->Documento());
  EXPECT_EQ(loaded->Realizado(), "?");
  EXPECT_EQ(loaded->SaldoParceiroComl(), posted->SaldoParceiroComl());
  EXPECT_EQ(loaded->ValorPago(), Currency());
  OnAnotherThread([&] {
    Tesovia other;
    other.InicializarTS(company.Path(), "ana", "segredo");
    ExpectErro(ErrorOf([] { internal::CarregarLancamentoTS(-5); }), TS_ERRO_CARREGAR_LANCAMENTO,
               "Erro na carga do lançamento id: -5.\nLançamento não localizado.", "em Tesovia.CarregarLancamentoTS");
  });
}

TEST_F(PostingTest, RefusalsWriteNothing) {
  struct Case {
    Posting posting;
    std::int32_t number;
    const char* description;  // none: the engine's
    const char* origin;
  };
  const Date day = Day(2008, 7, 5);
  const std::int32_t syntax = static_cast<std::int32_t>(db::EngineError::SyntaxInExpression);
  const char* unknownType = "Receita/despesa informada para o lançamento não existe.";
  const Case cases[] = {
      {{day, Cents(1), "1", "77"}, TS_ERRO_LANCAMENTO, unknownType, kOrigin},
      {{day, Cents(1), "1", " 0"}, TS_ERRO_LANCAMENTO, unknownType, kOrigin},
      {{day, Cents(-1), "1", "2"},
       TS_ERRO_LANCAMENTO,
       "A receita/despesa informada está especificada para aceitar apenas lançamentos de entrada,mas o valor informado "
       "é de saída.",
       kOrigin},
      {{day, Cents(1), "1", "3"},
       TS_ERRO_LANCAMENTO,
       "A receita/despesa informada está especificada para aceitar apenas lançamentos de saída, mas o valor informado "
       "é de entrada.",
       kOrigin},
      {{day, Cents(0), "1", "2"},
       TS_ERRO_LANCAMENTO,
       "Faltando informar o valor do lançamento.",
       "em CLancamento.Validar"},
      {{day, Cents(1), "", "0"},
       TS_ERRO_LANCAMENTO,
       "Faltando informar o código da conta de capital.",
       "em CLancamento.Validar"},
      {{day, Cents(1), "1", "0", "", 0, std::string(51, 'x')},
       TS_ERRO_LANCAMENTO,
       "Histórico não deve ter mais do que 50 caracteres.",
       "em CLancamento.Historico"},
      {{day, Cents(1), "1", "0'"}, syntax, nullptr, kOrigin},
      {{day, Cents(1), "1' OR '1'='1", "0"}, syntax, nullptr, kOrigin},
      {{day, Cents(1), "1", "0", "1'"}, syntax, nullptr, kOrigin},
      {{day, Cents(1), "1", "0", "", 0, "copo d'água"}, syntax, nullptr, kOrigin},
      {{day, Cents(1), "1", "0", "", 0, "x", "a'''b"}, syntax, nullptr, kOrigin},
      // Only two decimals are stored, so the balances of such an amount never verify.
      {{day, Currency::FromTenThousandths(100'050), "1", "0"}, TS_ERRO_LOGIN, "", "em Module1.VerificarApos"},
  };
  for (const Case& c : cases) {
    OnAnotherThread([&] {
      CurrentSession().host = host;
      Tesovia other;
      other.InicializarTS(company.Path(), "ana", "segredo");
      const Erro erro = ErrorOf([&] { test::Post(other, c.posting); });
      ExpectErro(erro, c.number, c.description ? c.description : erro.Descricao().c_str(), c.origin);
    });
  }
  EXPECT_EQ(ExpectSound(company), 0u);
  EXPECT_EQ(StoredSerial(*company.Open()), 0);
  for (const std::string& event : host->events) EXPECT_FALSE(event.starts_with("box")) << event;
}

TEST_F(PostingTest, DeactivatedMastersAreToldInABoxOutsideTheTransaction) {
  const Date day = Day(2008, 7, 5);
  const Posting cases[] = {
      {day, Cents(1), "9", "0"},          {day, Cents(1), "8", "0"},         {day, Cents(1), "77", "0"},
      {day, Cents(1), "1", "9"},          {day, Cents(1), "1", "001"},       {day, Cents(1), "1", "0", "9"},
      {day, Cents(1), "1", "0", "1.100"}, {day, Cents(1), "1", "0", "1", 9}, {day, Cents(1), "1", "0", "", -1},
  };
  for (const Posting& posting : cases) {
    SCOPED_TRACE(posting.account + "/" + posting.type + "/" + posting.centre + "/" + std::to_string(posting.partner));
    host->events.clear();
    recorder->ran.clear();
    Watch();
    host->onBox = [&] {
      EXPECT_EQ(recorder->ran.back().text, "Rollback");
      company.Execute("UPDATE Serial SET Serial = Serial");  // another user can write meanwhile
    };
    ExpectErro(ErrorOf([&] { Post(posting); }), TS_ERRO_LOGIN, "", kOrigin);
    EXPECT_EQ(host->events, (Strings{"busy", "discard", "normal", "pointer 0", kEntryBox, "pointer 2"}));
  }
  EXPECT_EQ(ExpectSound(company), 0u);
}

TEST_F(PostingTest, TheBoxNamesTheJournalWhenItsRowFails) {
  recorder->before = [&](std::string_view text) {
    // What a deactivation between the two inserts would do, were it not kept out by the transaction.
    if (text.starts_with("INSERT INTO HISTORICOS")) {
      CurrentSession().BancoDeDados->Execute("UPDATE Contas SET Inativa = True WHERE Codigo = '1'");
    }
  };
  Watch();
  ExpectErro(ErrorOf([&] { Post({Day(2008, 7, 5), Cents(1), "1", "0"}); }), TS_ERRO_LOGIN, "", kOrigin);
  ASSERT_EQ(host->events.size(), 6u);
  EXPECT_EQ(host->events[4],
            "box 0 [] Não foi possível incluir o histórico do lançamento.\n"
            "Possível causa: a conta, receita/despesa, centro de custo/lucro ou cliente/fornecedor foi desativado.");
  EXPECT_EQ(ExpectSound(company), 0u);
}

TEST_F(PostingTest, TheLastIdIsNeverPassed) {
  company.Execute("UPDATE Serial SET Serial = 2147483647");
  EXPECT_EQ(ErrorOf([&] { Post({Day(2008, 7, 5), Cents(1), "1", "0"}); }).Numero(), 6);
  company.Execute("UPDATE Serial SET Serial = 999999999");
  EXPECT_EQ(ErrorOf([&] {
              Post({Day(2008, 7, 5), Cents(1), "1", "0"});
            }).Numero(),
            static_cast<std::int32_t>(db::EngineError::TextTooLong));
  EXPECT_EQ(Entries(), 0);
  EXPECT_EQ(StoredSerial(*company.Open()), 999999999);
}

TEST_F(PostingTest, AnErrorOfTheEngineReachesTheClientAsItIs) {
  Watch();
  recorder->before = [](std::string_view text) {
    if (text.starts_with("UPDATE Lancamentos")) throw Erro(3043, "disco");
  };
  ExpectErro(ErrorOf([&] { Post({Day(2008, 7, 5), Cents(1), "1", "0"}); }), 3043, "disco", kOrigin);
  recorder->before = [](std::string_view text) {
    if (text == "CommitTrans") throw Erro(3043, "disco");
  };
  ExpectErro(ErrorOf([&] { Post({Day(2008, 7, 5), Cents(1), "1", "0"}); }), 3043, "disco", "em CDaoTrans_ComTrans");
  recorder->before = nullptr;
  EXPECT_EQ(ExpectSound(company), 0u);
  EXPECT_EQ(Post({Day(2008, 7, 5), Cents(1), "1", "0"})->Id(), 1);
}

}  // namespace
