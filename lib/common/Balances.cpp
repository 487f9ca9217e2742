#include "common/Balances.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

#include "common/Errors.h"
#include "common/Recordsets.h"
#include "common/Session.h"
#include "db/LedgerSchema.h"
#include "types/Conversions.h"

namespace tsv::Module1 {

namespace {

Currency Balance(const db::Recordset& recordset, std::string_view field) {
  return ToCurrency(recordset.Fields(field).Value());
}

}  // namespace

std::string_view CentroOuNenhum(const Classificacao& classificacao) {
  return classificacao.CodCentroCusto.empty() ? db::kNoCostCentre : classificacao.CodCentroCusto;
}

LugarNovo LerLugar(const Classificacao& classificacao, Date data, Currency valor) {
  const bool hasPartner = classificacao.IdParceiroComl != 0;
  const bool hasCentre = !classificacao.CodCentroCusto.empty();
  const auto query = BancoAberto()->QueryDefs("ParQrySerialESaldos");
  query->Parameters(0).Value = classificacao.IdParceiroComl;
  query->Parameters(1).Value = std::string(CentroOuNenhum(classificacao));
  query->Parameters(2).Value = classificacao.CodConta;
  query->Parameters(3).Value = classificacao.CodRecDesp;
  query->Parameters(4).Value = data;

  const ScopedRecordset row(query->OpenRecordset());
  LugarNovo result;
  result.Serial = ToLong(row->Fields("SERIAL").Value());
  if (hasPartner) result.Novos.ParceiroComl = Balance(*row, "SaldoParceiro") + valor;
  if (hasCentre) result.Novos.CentroCusto = Balance(*row, "SaldoCCusto") + valor;
  result.Novos.Conta = Balance(*row, "SaldoConta") + valor;
  result.Novos.RecDesp = Balance(*row, "SaldoRecDesp") + valor;
  result.Novos.Global = Balance(*row, "SaldoGlobal") + valor;
  if (result.Serial == std::numeric_limits<std::int32_t>::max()) Raise(RuntimeError::Overflow);
  result.Id = result.Serial + 1;
  result.DataId = MontarDataId(data, result.Id);
  return result;
}

Statement Reivindicacao(std::int32_t serial) {
  Statement claim;
  claim << "UPDATE Serial Set Serial = Serial + 1 where Serial = " << NumberLiteral(serial);
  return claim;
}

void ReivindicarSerial(std::int32_t serial, TS_ERROS numero) {
  Reivindicacao(serial).ExecuteOrRefuse(
      numero,
      "Erro de bloqueio. Informações de controle do sistema estavam em uso por outro usuário. Tente novamente.");
}

std::string MontarDataId(Date data, std::int32_t id) { return db::EntryKey(data, id); }

Date DiaDe(std::string_view dataId) {
  const auto part = [&](std::size_t first, std::size_t count) {
    int value = 0;
    const std::string_view digits = dataId.substr(std::min(first, dataId.size()), count);
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
  };
  return Date::FromCivil(part(0, 4), part(4, 2), part(6, 2));
}

Statement Deslocamento(const Classificacao& classificacao, Currency valor, std::string_view dataId,
                       const TextoDoDeslocamento& texto) {
  const Literal amount = AmountLiteral(valor);
  const Literal centre = TextOrNull(classificacao.CodCentroCusto);
  const Literal partner = NumberOrNull(classificacao.IdParceiroComl);
  Statement shift;
  shift << texto.Conta << TextLiteral(classificacao.CodConta) << " LIKE CodConta & '*') * " << amount << texto.RecDesp
        << TextLiteral(classificacao.CodRecDesp) << texto.TesteRecDesp << amount;
  if (!centre.IsNull()) shift << texto.CentroCusto << centre << " LIKE CodCentroCusto & '*') * " << amount;
  if (!partner.IsNull()) shift << texto.Parceiro << partner << texto.TesteParceiro << amount;
  shift << texto.Global << amount << texto.Onde << TextLiteral(dataId);
  return shift;
}

void DeslocarSaldos(const Classificacao& classificacao, Currency valor, std::string_view dataId,
                    const TextoDoDeslocamento& texto) {
  Deslocamento(classificacao, valor, dataId, texto).Execute();
}

db::QueryCall ConsultaDeSaldosAte(std::int32_t idParceiro, std::string_view codCCusto, std::string_view codConta,
                                  std::string_view codRecDesp, std::string_view novoDataId,
                                  std::string_view antigoDataId) {
  return {"ParQryLastSaldosByDataId",
          {{"IdParceiro", idParceiro},
           {"CodCCusto", std::string(codCCusto)},
           {"CodCon", std::string(codConta)},
           {"CodRecDes", std::string(codRecDesp)},
           {"ParNewDataId", std::string(novoDataId)},
           {"ParOldDataId", std::string(antigoDataId)}}};
}

Saldos LerSaldosAte(std::int32_t idParceiro, std::string_view codCCusto, std::string_view codConta,
                    std::string_view codRecDesp, std::string_view novoDataId, std::string_view antigoDataId) {
  db::QueryCall call = ConsultaDeSaldosAte(idParceiro, codCCusto, codConta, codRecDesp, novoDataId, antigoDataId);
  const auto query = BancoAberto()->QueryDefs(call.name);
  for (db::QueryDef::Parameter& parameter : call.parameters)
    query->Parameters(parameter.Name).Value = std::move(parameter.Value);
  const ScopedRecordset row(query->OpenRecordset());
  Saldos saldos;
  saldos.Conta = Balance(*row, "SaldoConta");
  saldos.RecDesp = Balance(*row, "SaldoRecDesp");
  saldos.CentroCusto = Balance(*row, "SaldoCCusto");
  saldos.ParceiroComl = Balance(*row, "SaldoParceiro");
  saldos.Global = Balance(*row, "SaldoGlobal");
  return saldos;
}

bool VerificarApos(std::int32_t idParceiro, std::string_view codCCusto, std::string_view codConta,
                   std::string_view codRecDesp, std::string_view novoDataId, std::string_view antigoDataId,
                   const Saldos& esperados) {
  return UnderHandler("em Module1.VerificarApos", [&] {
    const bool agrees =
        LerSaldosAte(idParceiro, codCCusto, codConta, codRecDesp, novoDataId, antigoDataId) == esperados;
    if (!agrees) throw Erro(TS_ERRO_LOGIN);
    return true;
  });
}

void ExigirSaldos(const Classificacao& classificacao, std::string_view novoDataId, std::string_view antigoDataId,
                  const Saldos& esperados, TS_ERROS numero) {
  if (!VerificarApos(classificacao.IdParceiroComl, CentroOuNenhum(classificacao), classificacao.CodConta,
                     classificacao.CodRecDesp, novoDataId, antigoDataId, esperados)) {
    GerarErro(numero,
              "Algumas informações de controle foram modificadas simultaneamente por outro usuário enquanto se dava "
              "esta operação.\nPor favor, tente novamente.");
  }
}

}  // namespace tsv::Module1
