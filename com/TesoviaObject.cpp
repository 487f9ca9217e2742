#include "TesoviaObject.h"

#include "CollectionObject.h"
#include "LancamentoObject.h"
#include "RecordsetObject.h"
#include "Requests.h"
#include "Values.h"

namespace tsv::com {
namespace {

// An optional argument that an early-bound client left out has no place at all.
std::string TextOrNone(BSTR* text) { return text ? TextOf(*text) : std::string(); }
std::int32_t NumberOrNone(const long* number) { return number ? From(*number) : 0; }

// Reads a property of a request through its interface, whoever implements it.
template <typename Value, typename Request>
Value Property(Request* request, HRESULT (STDMETHODCALLTYPE Request::*get)(Value*)) {
  Value value = {};
  const HRESULT outcome = (request->*get)(&value);
  if (FAILED(outcome)) throw Erro(automation::NumberOf(outcome));
  return value;
}

template <typename Request>
std::string TextProperty(Request* request, HRESULT (STDMETHODCALLTYPE Request::*get)(BSTR*)) {
  OleValue text;
  text.Raw().bstrVal = Property(request, get);
  text.Raw().vt = VT_BSTR;
  return TextOf(text.Raw().bstrVal);
}

CTransferencia Copied(_CTransferencia* request) {
  using Request = _CTransferencia;
  if (!request) Raise(RuntimeError::ObjectNotSet);
  CTransferencia copy;
  copy.CodContaOrigem(TextProperty(request, &Request::get_CodContaOrigem));
  copy.CodContaDestino(TextProperty(request, &Request::get_CodContaDestino));
  copy.Valor(From(Property(request, &Request::get_Valor)));
  copy.DataDaTransferencia(From(Property(request, &Request::get_DataDaTransferencia)));
  copy.HistoricoSaida(TextProperty(request, &Request::get_HistoricoSaida));
  copy.HistoricoEntrada(TextProperty(request, &Request::get_HistoricoEntrada));
  copy.DocumentoSaida(TextProperty(request, &Request::get_DocumentoSaida));
  copy.DocumentoEntrada(TextProperty(request, &Request::get_DocumentoEntrada));
  return copy;
}

CBaixa Copied(_CBaixa* request) {
  using Request = _CBaixa;
  if (!request) Raise(RuntimeError::ObjectNotSet);
  OleValue realised;
  realised.Raw() = Property(request, &Request::get_DataRealizacao);
  CBaixa copy;
  copy.TipoBaixa(From(Property(request, &Request::get_TipoBaixa)));
  copy.DataRealizacao(ValueOf(realised.Raw()));
  copy.ValorBaixado(From(Property(request, &Request::get_ValorBaixado)));
  copy.IdLancamento(From(Property(request, &Request::get_IdLancamento)));
  copy.IdConcorrencia(From(Property(request, &Request::get_IdConcorrencia)));
  return copy;
}

// What the operation returns, or no object.
_CLancamento* NewLancamento(std::shared_ptr<CLancamento> lancamento) {
  return lancamento ? new LancamentoObject(std::move(lancamento)) : nullptr;
}

template <typename... Pointers>
bool AllGiven(const Pointers*... pointers) {
  return (... && (pointers != nullptr));
}

}  // namespace

HRESULT STDMETHODCALLTYPE TesoviaObject::InicializarTS(BSTR* CaminhoBancoDeDados, BSTR* IdUsuario,
                                                       BSTR* SenhaUsuario) noexcept {
  if (!AllGiven(CaminhoBancoDeDados, IdUsuario, SenhaUsuario)) return E_POINTER;
  return Do([&] { tesovia_.InicializarTS(From(*CaminhoBancoDeDados), From(*IdUsuario), From(*SenhaUsuario)); });
}

HRESULT STDMETHODCALLTYPE TesoviaObject::AbrirRecordsetTS(BSTR* SQL, RecordsetTypeEnum* Tipo,
                                                          IDispatch** recordset) noexcept {
  if (!AllGiven(SQL, Tipo, recordset)) return E_POINTER;
  *recordset = nullptr;
  return Do([&] {
    *recordset = NewRecordsetObject(tesovia_.AbrirRecordsetTS(From(*SQL), static_cast<db::RecordsetTypeEnum>(*Tipo)));
  });
}

HRESULT STDMETHODCALLTYPE TesoviaObject::FazerLancamentoTS(DATE* DataPrevisao, DATE* DataReferencia, CURRENCY* Valor,
                                                           BSTR* Historico, BSTR* CodConta, BSTR* CodRecDesp,
                                                           BSTR* CodCentroDeCusto, long* IdParceiroComl,
                                                           BSTR* Documento, _CLancamento** lancamento) noexcept {
  if (!AllGiven(DataPrevisao, DataReferencia, Valor, Historico, CodConta, CodRecDesp, lancamento)) return E_POINTER;
  *lancamento = nullptr;
  return Do([&] {
    *lancamento = NewLancamento(tesovia_.FazerLancamentoTS(
        From(*DataPrevisao), From(*DataReferencia), From(*Valor), From(*Historico), From(*CodConta), From(*CodRecDesp),
        TextOrNone(CodCentroDeCusto), NumberOrNone(IdParceiroComl), TextOrNone(Documento)));
  });
}

HRESULT STDMETHODCALLTYPE TesoviaObject::ExcluirLancamentoTS(long* IdLancamento, long* IdConcorrencia) noexcept {
  if (!AllGiven(IdLancamento, IdConcorrencia)) return E_POINTER;
  return Do([&] { tesovia_.ExcluirLancamentoTS(From(*IdLancamento), From(*IdConcorrencia)); });
}

HRESULT STDMETHODCALLTYPE TesoviaObject::BaixarLancamentoTS(_CBaixa** Baixa, _CLancamento** lancamento) noexcept {
  if (!AllGiven(Baixa, lancamento)) return E_POINTER;
  *lancamento = nullptr;
  return Do([&] {
    CBaixa request;
    *lancamento = NewLancamento(internal::BaixarLancamentoTS([&]() -> CBaixa& { return request = Copied(*Baixa); }));
  });
}

HRESULT STDMETHODCALLTYPE TesoviaObject::FazerTransferenciaTS(_CTransferencia** Transferencia,
                                                              _Collection** lancamentos) noexcept {
  if (!AllGiven(Transferencia, lancamentos)) return E_POINTER;
  *lancamentos = nullptr;
  return Do([&] {
    CTransferencia request;
    const Collection entries =
        internal::FazerTransferenciaTS([&]() -> const CTransferencia& { return request = Copied(*Transferencia); });
    ComPointer<CollectionObject> legs(new CollectionObject);
    for (const auto& leg : entries) {
      legs->Append(OleValue(ComPointer<_CLancamento>(NewLancamento(leg)).Get()));
    }
    *lancamentos = legs.Detach();
  });
}

HRESULT STDMETHODCALLTYPE TesoviaObject::EstornarLancamentoTS(BSTR* HistoricoDoEstorno, long* IdLancamento,
                                                              long* IdConcorrencia,
                                                              _CLancamento** lancamento) noexcept {
  if (!AllGiven(HistoricoDoEstorno, IdLancamento, IdConcorrencia, lancamento)) return E_POINTER;
  *lancamento = nullptr;
  return Do([&] {
    *lancamento = NewLancamento(
        tesovia_.EstornarLancamentoTS(From(*HistoricoDoEstorno), From(*IdLancamento), From(*IdConcorrencia)));
  });
}

}  // namespace tsv::com
