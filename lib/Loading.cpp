#include "Loading.h"

#include <string>

#include "common/Errors.h"
#include "common/Recordsets.h"
#include "common/Session.h"
#include "common/Statement.h"

namespace tsv::internal {

using namespace Module1;

std::shared_ptr<CLancamento> Carregado(const db::Recordset& row) {
  auto lancamento = std::make_shared<CLancamento>();
  lancamento->CarregarDeRegistro(row);
  return lancamento;
}

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
    return Carregado(*row);
  });
}

std::shared_ptr<CLancamento> CarregarVersao(std::int32_t IdLancamento, std::int32_t IdConcorrencia, TS_ERROS numero,
                                            std::string_view refusal) {
  Statement select;
  select << "Select * From Lancamentos Where Id = " << NumberLiteral(IdLancamento)
         << " And IdConcorrencia=" << NumberLiteral(IdConcorrencia);
  const ScopedRecordset row(AbrirRecordset(select.Text(), db::dbOpenSnapshot));
  if (row->RecordCount() == 0) GerarErro(numero, refusal);
  return Carregado(*row);
}

Classificacao ClasseDe(const CLancamento& lancamento) {
  return {lancamento.CodConta(), lancamento.CodRecDesp(), lancamento.CodCentroCusto(), lancamento.IdParceiroComl()};
}

}  // namespace tsv::internal
