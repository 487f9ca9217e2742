#include "TransferLegs.h"

#include <utility>

#include "Loading.h"
#include "common/Literals.h"
#include "common/Recordsets.h"
#include "common/Statement.h"
#include "types/Conversions.h"

namespace tsv::internal {

using namespace Module1;

namespace {

constexpr TextoDoDeslocamento kShift = {.TesteRecDesp = " = CodRecDesp) * "};

Perna PernaDe(const db::Recordset& row) {
  const auto value = [&](std::string_view column) -> const Variant& { return row.Fields(column).Value(); };
  Perna perna;
  perna.Id = ToLong(value("Id"));
  perna.Valor = ToCurrency(value("Valor"));
  perna.Data = ToDate(VtoN(value("Data")));
  perna.DataReferencia = ToDate(VtoN(value("DataReferencia")));
  perna.DataId = ToText(value("DataId"));
  perna.CodConta = ToText(value("CodConta"));
  perna.DesConta = VtoS(value("DesConta"));
  if (const Variant& documento = value("Documento"); !IsNull(documento)) perna.Documento = ToText(documento);
  perna.Realizado = VtoS(value("Realizado"));
  perna.IdConcorrencia = ToLong(value("IdConcorrencia"));
  return perna;
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
  Perna saida = PernaDe(*rows);
  rows->MoveNext();
  return {std::move(saida), PernaDe(*rows)};
}

Classificacao ClasseDaPerna(std::string_view codConta) { return {std::string(codConta), "001", "", 0}; }

void DeslocarSaldosDaPerna(const Classificacao& classe, Currency valor, std::string_view dataId) {
  DeslocarSaldos(classe, valor, dataId, kShift);
}

}  // namespace tsv::internal
