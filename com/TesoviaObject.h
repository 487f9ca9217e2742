#pragma once

#include "Object.h"
#include "Tesovia.h"

namespace tsv::com {

// The ledger, as scripts and early-bound programs see it.
class TesoviaObject final : public Object<_Tesovia> {
 public:
  HRESULT STDMETHODCALLTYPE InicializarTS(BSTR* CaminhoBancoDeDados, BSTR* IdUsuario,
                                          BSTR* SenhaUsuario) noexcept override;
  HRESULT STDMETHODCALLTYPE AbrirRecordsetTS(BSTR* SQL, RecordsetTypeEnum* Tipo,
                                             IDispatch** recordset) noexcept override;
  HRESULT STDMETHODCALLTYPE FazerLancamentoTS(DATE* DataPrevisao, DATE* DataReferencia, CURRENCY* Valor,
                                              BSTR* Historico, BSTR* CodConta, BSTR* CodRecDesp, BSTR* CodCentroDeCusto,
                                              long* IdParceiroComl, BSTR* Documento,
                                              _CLancamento** lancamento) noexcept override;
  HRESULT STDMETHODCALLTYPE ExcluirLancamentoTS(long* IdLancamento, long* IdConcorrencia) noexcept override;
  HRESULT STDMETHODCALLTYPE BaixarLancamentoTS(_CBaixa** Baixa, _CLancamento** lancamento) noexcept override;
  HRESULT STDMETHODCALLTYPE FazerTransferenciaTS(_CTransferencia** Transferencia,
                                                 _Collection** lancamentos) noexcept override;
  HRESULT STDMETHODCALLTYPE EstornarLancamentoTS(BSTR* HistoricoDoEstorno, long* IdLancamento, long* IdConcorrencia,
                                                 _CLancamento** lancamento) noexcept override;

 private:
  tsv::Tesovia tesovia_;
};

}  // namespace tsv::com
