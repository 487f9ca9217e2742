#include "common/Balances.h"

#include "common/Errors.h"
#include "common/Recordsets.h"
#include "common/Session.h"
#include "common/Statement.h"
#include "db/LedgerSchema.h"
#include "types/Conversions.h"

namespace tsv::Module1 {

namespace {

Currency Balance(const db::Recordset& recordset, std::string_view field) {
  return ToCurrency(recordset.Fields(field).Value());
}

}  // namespace

SerialESaldos LerSerialESaldos(const Classificacao& classificacao, Date data, Currency valor) {
  const bool hasPartner = classificacao.IdParceiroComl != 0;
  const bool hasCentre = !classificacao.CodCentroCusto.empty();
  const auto query = BancoAberto()->QueryDefs("ParQrySerialESaldos");
  query->Parameters(0).Value = classificacao.IdParceiroComl;
  query->Parameters(1).Value = hasCentre ? classificacao.CodCentroCusto : std::string(db::kNoCostCentre);
  query->Parameters(2).Value = classificacao.CodConta;
  query->Parameters(3).Value = classificacao.CodRecDesp;
  query->Parameters(4).Value = data;

  const ScopedRecordset row(query->OpenRecordset());
  SerialESaldos result;
  result.Serial = ToLong(row->Fields("SERIAL").Value());
  if (hasPartner) result.Novos.ParceiroComl = Balance(*row, "SaldoParceiro") + valor;
  if (hasCentre) result.Novos.CentroCusto = Balance(*row, "SaldoCCusto") + valor;
  result.Novos.Conta = Balance(*row, "SaldoConta") + valor;
  result.Novos.RecDesp = Balance(*row, "SaldoRecDesp") + valor;
  result.Novos.Global = Balance(*row, "SaldoGlobal") + valor;
  return result;
}

bool ReivindicarSerial(std::int32_t serial) {
  Statement claim;
  claim << "UPDATE Serial Set Serial = Serial + 1 where Serial = " << NumberLiteral(serial);
  return claim.Execute() >= 1;
}

std::string MontarDataId(Date data, std::int32_t id) { return db::EntryKey(data, id); }

void DeslocarSaldos(const Classificacao& classificacao, Currency valor, std::string_view dataId) {
  const Literal amount = AmountLiteral(valor);
  const Literal centre = TextOrNull(classificacao.CodCentroCusto);
  const Literal partner = NumberOrNull(classificacao.IdParceiroComl);
  Statement shift;
  shift << "UPDATE Lancamentos Set SaldoConta = SaldoConta + Abs(" << TextLiteral(classificacao.CodConta)
        << " LIKE CodConta & '*') * " << amount;
  shift << ", SaldoRecDesp = SaldoRecDesp + Abs(" << TextLiteral(classificacao.CodRecDesp)
        << " LIKE CodRecDesp & '*') * " << amount;
  if (!centre.IsNull()) {
    shift << ", SaldoCentroCusto = SaldoCentroCusto + Abs(Not CodCentroCusto Is NULL AND " << centre
          << " LIKE CodCentroCusto & '*') * " << amount;
  }
  if (!partner.IsNull()) {
    shift << ", SaldoParceiroComl = SaldoParceiroComl + Abs(Not IdParceiroComl Is NULL And " << partner
          << " = IdParceiroComl) * " << amount;
  }
  shift << ", SaldoGlobal = SaldoGlobal + " << amount << " where DataId > " << TextLiteral(dataId);
  shift.Execute();
}

bool VerificarApos(std::int32_t idParceiro, std::string_view codCCusto, std::string_view codConta,
                   std::string_view codRecDesp, std::string_view novoDataId, std::string_view antigoDataId,
                   const Saldos& esperados) {
  return UnderHandler("em Module1.VerificarApos", [&] {
    const auto query = BancoAberto()->QueryDefs("ParQryLastSaldosByDataId");
    query->Parameters("IdParceiro").Value = idParceiro;
    query->Parameters("CodCCusto").Value = std::string(codCCusto);
    query->Parameters("CodCon").Value = std::string(codConta);
    query->Parameters("CodRecDes").Value = std::string(codRecDesp);
    query->Parameters("ParNewDataId").Value = std::string(novoDataId);
    query->Parameters("ParOldDataId").Value = std::string(antigoDataId);

    const ScopedRecordset row(query->OpenRecordset());
    const bool agrees =
        Balance(*row, "SaldoConta") == esperados.Conta && Balance(*row, "SaldoRecDesp") == esperados.RecDesp &&
        Balance(*row, "SaldoCCusto") == esperados.CentroCusto &&
        Balance(*row, "SaldoParceiro") == esperados.ParceiroComl && Balance(*row, "SaldoGlobal") == esperados.Global;
    if (!agrees) throw Erro(TS_ERRO_LOGIN);
    return true;
  });
}

}  // namespace tsv::Module1
