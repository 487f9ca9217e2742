#include "Loading.h"

#include <string>

#include "common/Errors.h"
#include "common/Recordsets.h"
#include "common/Session.h"
#include "common/Statement.h"

namespace tsv::internal {

using namespace Module1;

std::shared_ptr<db::Recordset> AbrirRecordset(std::string_view SQL, db::RecordsetTypeEnum Tipo) {
  auto recordset = BancoAberto()->OpenRecordset(SQL, Tipo);
  CompletarContagem(*recordset);
  return recordset;
}

std::shared_ptr<CLancamento> CarregarLancamentoTS(std::int32_t IdLancamento) {
  return UnderHandler("em Tesovia.CarregarLancamentoTS", [&] {
    BancoAberto();
    Statement select;
    select << "Select * From Lancamentos Where Id = " << NumberLiteral(IdLancamento);
    const ScopedRecordset row(AbrirRecordset(select.Text(), db::dbOpenSnapshot));
    if (row->RecordCount() == 0) {
      GerarErro(TS_ERRO_CARREGAR_LANCAMENTO,
                "Erro na carga do lançamento id: " + std::to_string(IdLancamento) + ".\nLançamento não localizado.");
    }
    auto lancamento = std::make_shared<CLancamento>();
    lancamento->CarregarDeRegistro(*row);
    return lancamento;
  });
}

}  // namespace tsv::internal
