#include <memory>
#include <optional>
#include <string>

#include "EntryColumns.h"
#include "Loading.h"
#include "Requests.h"
#include "Tesovia.h"
#include "TransferLegs.h"
#include "common/Balances.h"
#include "common/CDaoTrans.h"
#include "common/CHourGlass.h"
#include "common/Errors.h"
#include "common/Journal.h"
#include "common/Recordsets.h"
#include "common/Session.h"
#include "common/Statement.h"

namespace tsv {

using namespace Module1;

namespace {

// What the statements of the two legs say differently.
struct LegText {
  Fragment EntryCodes;  // after the id
  Fragment EntryType;   // after the account
  Fragment JournalType;
  Fragment JournalBalances;
  Fragment JournalAccount;  // the account's state
  std::string_view Refusal;
};

constexpr LegText kOutgoing = {
    " As Id, 1 As Transferencia, ",
    " As CodConta,'001' As CodRecDesp, NULL as CodCentroCusto, NULL As IdParceiroComl,",
    " As CodConta,C.DesConta,'001' As CodRecDesp,'TRANSFERÊNCIA ENTRE CONTAS' As DesMovimentacao, "
    "NULL As CodCentroCusto, NULL As DesCentroDeCusto, NULL As IdParceiroComl, NULL As NomeParceiro,NULL As Filial,",
    "0 As SaldoCentroCusto , 0 As SaldoParceiroComl, ",
    " AND C.Inativa = False And C.Excluida=False",
    "Não foi possível fazer o lançamento de saída. Transferência cancelada.\nPossível causa: a conta foi desativada."};

constexpr LegText kIncoming = {
    " As Id, 2 As Transferencia, ",
    " As CodConta,'001' As CodRecDesp, NULL As CodCentroCusto, NULL As IdParceiroComl, ",
    " As CodConta,C.DesConta,'001' As CodRecDesp, 'TRANSFERÊNCIA ENTRE CONTAS' As DesMovimentacao,"
    "NULL As CodCentroCusto,NULL As DesCentroDeCusto, NULL As IdParceiroComl,NULL As NomeParceiro,NULL As Filial,",
    "0 As SaldoCentroCusto, 0 As SaldoParceiroComl, ",
    " AND C.Inativa = False AND C.Excluida = False",
    "Não foi possível fazer o lançamento de entrada. Transferência cancelada.\nPossível causa: a conta foi "
    "desativada."};

// A leg that is about to be written, at the place that was read for it.
struct NewLeg {
  NewLeg(std::string_view codConta, Currency valor, Date date, const Literal& dateLiteral, std::string_view historico,
         std::string_view documento)
      : Classe(internal::ClasseDaPerna(codConta)),
        Valor(valor),
        Lugar(LerLugar(Classe, date, valor)),
        Id(NumberLiteral(Lugar.Id)),
        CodConta(TextLiteral(codConta)),
        Columns{TextOrNull(documento),
                AmountLiteral(valor),
                dateLiteral,
                dateLiteral,
                dateLiteral,
                TextLiteral(historico),
                TextLiteral(Lugar.DataId),
                AmountLiteral(Lugar.Novos.Global),
                AmountLiteral(Lugar.Novos.Conta),
                AmountLiteral(Lugar.Novos.RecDesp)} {}

  Classificacao Classe;
  Currency Valor;
  LugarNovo Lugar;
  Literal Id, CodConta;
  internal::EntryColumns Columns;
};

Statement EntryInsert(const NewLeg& leg, const LegText& text) {
  Statement insert;
  insert << "INSERT INTO LANCAMENTOS Select " << leg.Id << text.EntryCodes << leg.CodConta << text.EntryType;
  AppendColumns(insert, leg.Columns);
  insert << "0 As SaldoCentroCusto, 0 As SaldoParceiroComl, " << NumberLiteral(CurrentSession().IdUsuario)
         << " As IdUsuario, 0 as IdConcorrencia FROM CONTAS WHERE Codigo = " << leg.CodConta
         << " AND Inativa = False And Excluida=False";
  return insert;
}

Statement JournalInsert(const NewLeg& leg, const LegText& text) {
  const Session& session = CurrentSession();
  Statement insert;
  insert << "INSERT INTO HISTORICOSDELANCAMENTOS Select " << DateLiteral(session.host->Now()) << "As DataHora, "
         << NumberLiteral(kInclusao) << " As IdAcao, " << leg.Id << text.EntryCodes << leg.CodConta << text.JournalType;
  AppendColumns(insert, leg.Columns);
  insert << text.JournalBalances << NumberLiteral(session.IdUsuario) << " As IdUsuario,"
         << TextLiteral(session.DesUsuario) << " As DesUsuario FROM CONTAS As C WHERE C.Codigo = " << leg.CodConta
         << text.JournalAccount;
  return insert;
}

void Write(const NewLeg& leg, const LegText& text) {
  ReivindicarSerial(leg.Lugar.Serial, TS_ERRO_TRANSFERENCIA);
  EntryInsert(leg, text).ExecuteOrRefuse(TS_ERRO_TRANSFERENCIA, text.Refusal);
  JournalInsert(leg, text).ExecuteOrRefuse(
      TS_ERRO_TRANSFERENCIA,
      "Não foi possível gravar o histórico da transferência. Transferência cancelada.\nPossível causa: "
      "a conta foi desativada.");
  internal::DeslocarSaldosDaPerna(leg.Classe, leg.Valor, leg.Lugar.DataId);
  ExigirSaldos(leg.Classe, leg.Lugar.DataId, " ", leg.Lugar.Novos, TS_ERRO_TRANSFERENCIA);
}

void Link(const NewLeg& outgoing, const NewLeg& incoming) {
  Statement link;
  link << "INSERT INTO TRANSFERENCIAS (SerialSai,SerialEntra) VALUES(" << outgoing.Id << "," << incoming.Id << ")";
  link.Execute();
}

Collection Load(const NewLeg& outgoing, const NewLeg& incoming) {
  Statement select;
  select << "Select * From Lancamentos Where Id=" << outgoing.Id << " OR Id=" << incoming.Id;
  const ScopedRecordset rows(internal::AbrirRecordset(select.Text(), db::dbOpenSnapshot));
  Collection legs;
  legs.Add(internal::Carregado(*rows));
  rows->MoveNext();
  legs.Add(internal::Carregado(*rows));
  return legs;
}

}  // namespace

Collection internal::FazerTransferenciaTS(const std::function<const CTransferencia&()>& transferencia) {
  return UnderHandler("em Tesovia.FazerTransferenciaTS", [&] {
    BancoAberto();
    const CTransferencia& Transferencia = transferencia();
    std::optional<CHourGlass> busy(std::in_place);
    const Date date = Transferencia.DataDaTransferencia();
    const Currency valor = Transferencia.Valor().Abs();

    // The outgoing entry keeps the time of day, the incoming one the day alone.
    const NewLeg outgoing(Transferencia.CodContaOrigem(), -valor, date, DateLiteral(date),
                          Transferencia.HistoricoSaida(), Transferencia.DocumentoSaida());
    CDaoTrans transaction;
    transaction.BegTrans();
    Write(outgoing, kOutgoing);

    busy.emplace();
    const NewLeg incoming(Transferencia.CodContaDestino(), valor, date, DateOnlyLiteral(date),
                          Transferencia.HistoricoEntrada(), Transferencia.DocumentoEntrada());
    Write(incoming, kIncoming);
    Link(outgoing, incoming);
    // Read before the commit: a client that is told of a failure must find nothing written.
    Collection legs = Load(outgoing, incoming);
    transaction.ComTrans();
    return legs;
  });
}

Collection Tesovia::FazerTransferenciaTS(const CTransferencia& Transferencia) {
  return internal::FazerTransferenciaTS([&]() -> const CTransferencia& { return Transferencia; });
}

}  // namespace tsv
