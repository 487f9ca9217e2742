#include "common/Journal.h"

#include "common/Session.h"

namespace tsv::Module1 {

namespace {

constexpr Fragment kValues =
    "L.Documento,L.Valor,L.ValorPago,L.Data,L.DataReferencia,L.DataVencimento,L.Historico,L.Estorno,L.DataId,";
constexpr Fragment kState = ",L.Estornado,L.Realizado, L.Transferencia ";

Statement Begun(ACAO acao) {
  const Session& session = CurrentSession();
  Statement insert;
  insert << "INSERT INTO HISTORICOSDELANCAMENTOS SELECT " << NumberLiteral(session.IdUsuario) << " As IdUsuario,"
         << TextLiteral(session.DesUsuario) << " As DesUsuario," << DateLiteral(session.host->Now()) << " AS DataHora,"
         << NumberLiteral(acao) << " As IdAcao,";
  return insert;
}

}  // namespace

Statement JournalOfEntry(ACAO acao, std::int32_t id, const std::optional<Literal>& correction) {
  Statement insert = Begun(acao);
  insert << "L.Id, L.CodConta,C.DesConta,L.CodRecDesp,T.DesMovimentacao,L.CodCentroCusto,CC.DesCentroDeCusto,"
            "L.IdParceiroComl,P.Nome As NomeParceiro,P.Filial,"
         << kValues;
  if (correction) {
    insert << "L.SaldoConta + " << *correction << " As SaldoConta,L.SaldoRecDesp + " << *correction
           << " As SaldoRecDesp,L.SaldoCentroCusto + Abs(Not L.CodCentroCusto Is NULL) * " << *correction
           << " As SaldoCentroCusto,L.SaldoParceiroComl + Abs(Not IdParceiroComl Is NULL) * " << *correction
           << " As SaldoParceiroComl, L.SaldoGlobal + " << *correction << " As SaldoGlobal";
  } else {
    insert << "L.SaldoConta,L.SaldoRecDesp,L.SaldoCentroCusto,L.SaldoParceiroComl,L.SaldoGlobal";
  }
  insert << kState << "FROM (((LANCAMENTOS AS L INNER JOIN CONTAS AS C ON (L.ID=" << NumberLiteral(id)
         << " AND L.CODCONTA = C.CODIGO)) INNER JOIN TIPOSMOVIMENTACOES AS T ON L.CODRECDESP = T.CODIGO) "
            "LEFT JOIN CENTROSDECUSTO AS CC ON L.CODCENTROCUSTO = CC.CODIGO) "
            "LEFT JOIN PARCEIROSCOMERCIAIS AS P ON L.IdParceiroComl=P.Id";
  return insert;
}

Statement JournalOfLeg(ACAO acao, std::int32_t id, const LegJournalText& text,
                       const std::optional<Literal>& correction) {
  Statement insert = Begun(acao);
  insert << "L.Id, L.CodConta,C.DesConta,L.CodRecDesp,'TRANSFERÊNCIA ENTRE CONTAS'" << text.Movement
         << ", NULL AS DESCENTRODECUSTO, NULL AS IDPARCEIROCOML, NULL AS NOMEPARCEIRO, NULL AS FILIAL," << kValues;
  if (correction) {
    insert << "L.SaldoConta + " << *correction << " As SaldoConta,L.SaldoRecDesp + " << *correction
           << " As SaldoRecDesp,L.SaldoGlobal + " << *correction << " As SaldoGlobal";
  } else {
    insert << "L.SaldoConta,L.SaldoRecDesp,L.SaldoGlobal";
  }
  insert << kState << "FROM LANCAMENTOS AS L INNER JOIN CONTAS AS C ON (L.ID=" << NumberLiteral(id) << text.Ending;
  return insert;
}

}  // namespace tsv::Module1
