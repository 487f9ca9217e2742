#include "TransferLegs.h"

#include <utility>

#include "Loading.h"
#include "common/Literals.h"
#include "common/Recordsets.h"
#include "common/Statement.h"
#include "db/LedgerSchema.h"
#include "types/Conversions.h"

namespace tsv::internal {

using namespace Module1;

namespace {

constexpr TextoDoDeslocamento kShift = {.TesteRecDesp = " = CodRecDesp) * "};

Leg LegOf(const db::Recordset& row) {
  const auto value = [&](std::string_view column) -> const Variant& { return row.Fields(column).Value(); };
  Leg leg;
  leg.Id = ToLong(value("Id"));
  leg.Valor = ToCurrency(value("Valor"));
  leg.Data = ToDate(VtoN(value("Data")));
  leg.DataReferencia = ToDate(VtoN(value("DataReferencia")));
  leg.DataId = ToText(value("DataId"));
  leg.CodConta = ToText(value("CodConta"));
  leg.DesConta = VtoS(value("DesConta"));
  if (const Variant& documento = value("Documento"); !IsNull(documento)) leg.Documento = ToText(documento);
  leg.Realizado = VtoS(value("Realizado"));
  leg.IdConcorrencia = ToLong(value("IdConcorrencia"));
  return leg;
}

}  // namespace

Pernas LerPernas(std::int32_t id, TS_ERROS numero) {
  Statement select;
  select << "SELECT L.*, C.DesConta from (Lancamentos As L INNER JOIN Contas AS C ON L.CodConta = C.Codigo) inner JOIN "
            "Transferencias As T ON ((L.Id = T.SerialEntra Or L.Id = T.SerialSai) And (T.SerialSai = "
         << NumberLiteral(id) << " or  T.SerialEntra =" << NumberLiteral(id) << ")) ORDER BY L.Transferencia";
  const ScopedRecordset rows(AbrirRecordset(select.Text(), db::dbOpenSnapshot));
  if (rows->RecordCount() < 2) {
    GerarErro(numero, "Erro: faltando informação sobre o lançamento correspondente na operação de transferência.");
  }
  Leg saida = LegOf(*rows);
  rows->MoveNext();
  return {std::move(saida), LegOf(*rows)};
}

Classificacao ClasseDaPerna(std::string_view codConta) { return {std::string(codConta), "001", "", 0}; }

void DeslocarSaldosDaPerna(const Classificacao& classe, Currency valor, std::string_view dataId) {
  DeslocarSaldos(classe, valor, dataId, kShift);
}

void VerificarPerna(const Classificacao& classe, const Lugar& lugar, TS_ERROS numero) {
  if (!VerificarApos(classe.IdParceiroComl, db::kNoCostCentre, classe.CodConta, classe.CodRecDesp, lugar.DataId, " ",
                     lugar.Novos)) {
    GerarErro(numero,
              "Algumas informações de controle foram modificadas simultaneamente por outro usuário enquanto se dava "
              "esta operação.\nPor favor, tente novamente.");
  }
}

}  // namespace tsv::internal
