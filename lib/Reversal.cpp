#include <memory>
#include <string>

#include "Limits.h"
#include "Loading.h"
#include "Tesovia.h"
#include "TransferLegs.h"
#include "common/Balances.h"
#include "common/CDaoTrans.h"
#include "common/CHourGlass.h"
#include "common/Errors.h"
#include "common/Journal.h"
#include "common/Session.h"
#include "common/Statement.h"
#include "types/Conversions.h"
#include "types/Text.h"

namespace tsv {

using namespace Module1;

namespace {

constexpr TextoDoDeslocamento kShift = {.TesteParceiro = "= IdParceiroComl) * "};

[[noreturn]] void Refuse(std::string_view message) { GerarErro(TS_ERRO_ESTORNO, message); }

void RefuseQuotes(std::string_view historico, std::string_view refusal) {
  if (historico.find_first_of("\"'") != std::string_view::npos) Refuse(refusal);
}

std::string_view RequireHistory(std::string_view historico) {
  const std::string_view trimmed = text::Trim(historico);
  if (trimmed.empty()) Refuse("Erro: histórico de estorno não informado.");
  return trimmed;
}

void ExecuteMark(const Statement& mark) {
  mark.ExecuteOrRefuse(TS_ERRO_ESTORNO,
                       "Não foi possível estornar o lançamento selecionado. Uma possível causa é que ele já tenha sido "
                       "estornado por outro usuário ou baixado como não realizado. Verifique.");
}

// Under the version that was read: not realised before, not reversed before.
void Mark(std::int32_t id, std::int32_t idConcorrencia) {
  Statement mark;
  mark << "UPDATE LANCAMENTOS SET ESTORNADO = TRUE, REALIZADO='E', IDCONCORRENCIA = IDCONCORRENCIA + 1  WHERE Id = "
       << NumberLiteral(id)
       << " AND REALIZADO <> 'N' AND ESTORNADO = FALSE AND IDCONCORRENCIA =" << NumberLiteral(idConcorrencia);
  ExecuteMark(mark);
}

// The incoming leg of a transfer keeps its version: the outgoing leg's stands for both.
void MarkIncoming(std::int32_t id) {
  Statement mark;
  mark << "UPDATE LANCAMENTOS SET ESTORNADO = TRUE, REALIZADO='E' WHERE Id = " << NumberLiteral(id)
       << " AND REALIZADO <> 'N' AND ESTORNADO = FALSE";
  ExecuteMark(mark);
}

void InsertJournal(const Statement& journal) {
  journal.ExecuteOrRefuse(TS_ERRO_ESTORNO,
                          "Erro na gravação de histórico do estorno.\nO lançamento não foi estornado.");
}

// The entry that stands against another, of the opposite amount, after the entries of the same day.
Statement ReversingInsert(const CLancamento& entry, const Classificacao& classe, Currency amount,
                          const LugarNovo& lugar, std::string_view historico) {
  const Literal centre = TextOrNull(classe.CodCentroCusto);
  const Literal partner = NumberOrNull(classe.IdParceiroComl);
  const Literal account = TextLiteral(classe.CodConta);
  const Literal type = TextLiteral(classe.CodRecDesp);
  const Literal date = DateLiteral(ToDate(entry.Data()));
  Statement insert;
  insert << "INSERT INTO LANCAMENTOS SELECT " << NumberLiteral(lugar.Id) << " As Id," << account << " As CodConta,"
         << type << " As CodRecDesp," << centre << " As CodCentroCusto," << partner << " As IdParceiroComl,"
         << TextLiteral(entry.Documento()) << " As Documento," << AmountLiteral(amount) << " As Valor," << date
         << " As Data," << DateLiteral(ToDate(entry.DataReferencia())) << " As DataReferencia," << date
         << " As DataVencimento," << TextLiteral(historico) << " As Historico, True As Estorno,'E' As Realizado,"
         << TextLiteral(lugar.DataId) << " As DataId," << AmountLiteral(lugar.Novos.Global) << " As SaldoGlobal,"
         << AmountLiteral(lugar.Novos.Conta) << " As SaldoConta, " << AmountLiteral(lugar.Novos.RecDesp)
         << " As SaldoRecDesp," << AmountLiteral(lugar.Novos.CentroCusto) << " As SaldoCentroCusto, "
         << AmountLiteral(lugar.Novos.ParceiroComl) << " As SaldoParceiroComl, "
         << NumberLiteral(CurrentSession().IdUsuario)
         << " As IdUsuario, 0 as IdConcorrencia FROM Contas As C , TiposMovimentacoes As T ";
  if (!centre.IsNull()) insert << ", CentrosDeCusto As U";
  if (!partner.IsNull()) insert << ",ParceirosComerciais as P";
  insert << " WHERE C.Codigo = " << account << " AND C.Inativa = False ANd C.Excluida=False AND T.Codigo = " << type
         << " AND T.Inativo = False ANd T.Excluido=False AND Len(C.Codigo) * 0 = Len(T.Codigo) * 0 ";
  if (!centre.IsNull()) {
    insert << " AND U.Codigo = " << centre
           << " And U.Inativo = False ANd U.Excluido=False And Len(T.Codigo) * 0 = Len(U.Codigo) * 0 ";
  }
  if (!partner.IsNull()) {
    insert << " AND P.Id = " << partner << " AND P.Inativo = False And Len(T.Codigo) * 0 = P.Id * 0 ";
  }
  return insert;
}

std::shared_ptr<CLancamento> Reverse(const CLancamento& entry, std::int32_t idConcorrencia,
                                     std::string_view historico) {
  RefuseQuotes(historico, "Caracteres de aspas duplas ou simples não são permitidos em histórico.");
  const std::string_view history = RequireHistory(historico);
  if (text::Length(history) > internal::kHistoryLimit) Refuse("Erro: histórico com mais de 50 caracteres.");

  const CHourGlass busy;
  const Classificacao classe = internal::ClasseDe(entry);
  const Currency amount = -entry.Valor();
  const LugarNovo lugar = LerLugar(classe, ToDate(entry.Data()), amount);

  CDaoTrans transaction;
  transaction.BegTrans();
  ReivindicarSerial(lugar.Serial, TS_ERRO_ESTORNO);
  Mark(entry.Id(), idConcorrencia);
  InsertJournal(JournalOfEntry(kEstorno, entry.Id()));
  ReversingInsert(entry, classe, amount, lugar, text::Upper(history))
      .ExecuteOrRefuse(TS_ERRO_ESTORNO,
                       "Não foi possível incluir o estorno.\nPossível causa: a conta, receita/despesa, centro de "
                       "custo/lucro ou cliente/fornecedor foi desativado.");
  InsertJournal(JournalOfEntry(kEstorno, lugar.Id));
  DeslocarSaldos(classe, amount, lugar.DataId, kShift);
  ExigirSaldos(classe, lugar.DataId, " ", lugar.Novos, TS_ERRO_ESTORNO);
  auto reversing = internal::CarregarLancamentoTS(lugar.Id);
  transaction.ComTrans();
  return reversing;
}

// What the statements of the two legs say differently. The incoming leg's reversing entry is marked as no transfer.
struct LegText {
  LegJournalText MarkedJournal;
  LegJournalText ReversingJournal;
  Fragment EntryEnd;
};

constexpr LegText kOutgoing = {
    {.Movement = " As DesMovimentacao,NULL AS CODCENTROCUSTO"},
    {.Ending = " AND L.CODCONTA = C.CODIGO ANd C.Excluida=False)"},
    " As IdUsuario, 1 As Transferencia, 0 as IdConcorrencia FROM Contas As C WHERE C.Codigo = "};

constexpr LegText kIncoming = {{.Ending = " AND L.CODCONTA = C.CODIGO ANd C.Excluida=False )"},
                               {.Ending = " AND L.CODCONTA = C.CODIGO ANd C.Excluida=False )"},
                               " As IdUsuario, 0 as IdConcorrencia FROM Contas As C WHERE C.Codigo = "};

Statement ReversingInsert(const internal::Perna& leg, Currency amount, const LugarNovo& lugar, const Literal& historico,
                          const LegText& text) {
  const Literal account = TextLiteral(leg.CodConta);
  const Literal date = DateLiteral(leg.Data);
  Statement insert;
  insert << "INSERT INTO LANCAMENTOS SELECT " << NumberLiteral(lugar.Id) << " As Id," << account
         << " As CodConta, '001' As CodRecDesp, " << (leg.Documento ? TextLiteral(*leg.Documento) : TextOrNull(""))
         << " As Documento," << AmountLiteral(amount) << " As Valor," << date << " As Data,"
         << DateLiteral(leg.DataReferencia) << " As DataReferencia," << date << " As DataVencimento," << historico
         << " As Historico, True As Estorno," << TextLiteral(lugar.DataId) << " As DataId,"
         << AmountLiteral(lugar.Novos.Global) << " As SaldoGlobal," << AmountLiteral(lugar.Novos.Conta)
         << " As SaldoConta," << AmountLiteral(lugar.Novos.RecDesp) << " As SaldoRecDesp,  'E' As Realizado, "
         << NumberLiteral(CurrentSession().IdUsuario) << text.EntryEnd << account
         << " AND C.Inativa = False ANd C.Excluida=False ";
  return insert;
}

void ReverseLeg(const internal::Perna& leg, const Literal& historico, bool isOutgoing) {
  const LegText& text = isOutgoing ? kOutgoing : kIncoming;
  const Classificacao classe = internal::ClasseDaPerna(leg.CodConta);
  const Currency amount = -leg.Valor;
  const LugarNovo lugar = LerLugar(classe, leg.Data, amount);
  ReivindicarSerial(lugar.Serial, TS_ERRO_ESTORNO);
  if (isOutgoing) {
    Mark(leg.Id, leg.IdConcorrencia);
  } else {
    MarkIncoming(leg.Id);
  }
  InsertJournal(JournalOfLeg(kEstorno, leg.Id, text.MarkedJournal));
  ReversingInsert(leg, amount, lugar, historico, text)
      .ExecuteOrRefuse(TS_ERRO_ESTORNO, "Não foi possível incluir o estorno.\nPossível causa: a conta '" +
                                            leg.DesConta + "' foi desativada.");
  InsertJournal(JournalOfLeg(kEstorno, lugar.Id, text.ReversingJournal));
  internal::DeslocarSaldosDaPerna(classe, amount, lugar.DataId);
  ExigirSaldos(classe, lugar.DataId, " ", lugar.Novos, TS_ERRO_ESTORNO);
}

void EstornoDeTransferencia(const CLancamento& lancamento, std::string_view historico) {
  UnderHandler("em Tesovia_EstornoDeTransferencia", [&] {
    const auto [outgoing, incoming] = internal::LerPernas(lancamento.Id(), TS_ERRO_ESTORNO);
    RefuseQuotes(historico,
                 "Caracteres de aspas duplas ou simples não são permitidos em histórico. Favor tentar novamente.");
    const Literal history = TextLiteral(text::Upper(RequireHistory(historico)));

    const CHourGlass busy;
    CDaoTrans transaction;
    transaction.BegTrans();
    ReverseLeg(outgoing, history, true);
    ReverseLeg(incoming, history, false);
    transaction.ComTrans();
  });
}

}  // namespace

std::shared_ptr<CLancamento> Tesovia::EstornarLancamentoTS(std::string_view HistoricoDoEstorno,
                                                           std::int32_t IdLancamento, std::int32_t IdConcorrencia) {
  return UnderHandler("em Tesovia.EstornarLancamentoTS", [&]() -> std::shared_ptr<CLancamento> {
    BancoAberto(TS_ERRO_ESTORNO);
    const auto lancamento = internal::CarregarVersao(
        IdLancamento, IdConcorrencia, TS_ERRO_ESTORNO,
        "O lançamento não foi localizado ou outro usuário o alterou enquanto você o acessava. O estorno não se "
        "realizou.");
    if (lancamento->Realizado() == "N") {
      Refuse("Este lançamento já está baixado como não realizado. Para estorná-lo é preciso remover sua baixa antes.");
    }
    if (lancamento->Transferencia() != 0) {
      EstornoDeTransferencia(*lancamento, HistoricoDoEstorno);
      return nullptr;
    }
    return Reverse(*lancamento, IdConcorrencia, HistoricoDoEstorno);
  });
}

}  // namespace tsv
