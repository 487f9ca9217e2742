#pragma once

#include "CLancamento.h"
#include "ValueObject.h"

namespace tsv::com {

// An entry, as scripts and early-bound programs see it.
class LancamentoObject final : public ValueObject<_CLancamento, tsv::CLancamento> {
 public:
  using ValueObject::ValueObject;

  HRESULT STDMETHODCALLTYPE get_Id(long* valor) noexcept override { return Get(valor, value_->Id()); }
  HRESULT STDMETHODCALLTYPE put_Id(long* valor) noexcept override {
    return Let(valor, [&] { value_->Id(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_CodConta(BSTR* valor) noexcept override { return Get(valor, value_->CodConta()); }
  HRESULT STDMETHODCALLTYPE put_CodConta(BSTR* valor) noexcept override {
    return Let(valor, [&] { value_->CodConta(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_CodRecDesp(BSTR* valor) noexcept override { return Get(valor, value_->CodRecDesp()); }
  HRESULT STDMETHODCALLTYPE put_CodRecDesp(BSTR* valor) noexcept override {
    return Let(valor, [&] { value_->CodRecDesp(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_Valor(CURRENCY* valor) noexcept override { return Get(valor, value_->Valor()); }
  HRESULT STDMETHODCALLTYPE put_Valor(CURRENCY* valor) noexcept override {
    return Let(valor, [&] { value_->Valor(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_DataId(BSTR* valor) noexcept override { return Get(valor, value_->DataId()); }
  HRESULT STDMETHODCALLTYPE put_DataId(BSTR* valor) noexcept override {
    return Let(valor, [&] { value_->DataId(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_Data(VARIANT* valor) noexcept override { return Get(valor, value_->Data()); }
  HRESULT STDMETHODCALLTYPE put_Data(VARIANT* valor) noexcept override {
    return Let(valor, [&] { value_->Data(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_Documento(BSTR* valor) noexcept override { return Get(valor, value_->Documento()); }
  HRESULT STDMETHODCALLTYPE put_Documento(BSTR* valor) noexcept override {
    return Let(valor, [&] { value_->Documento(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_Historico(BSTR* valor) noexcept override { return Get(valor, value_->Historico()); }
  HRESULT STDMETHODCALLTYPE put_Historico(BSTR* valor) noexcept override {
    return Let(valor, [&] { value_->Historico(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_Estorno(VARIANT_BOOL* valor) noexcept override { return Get(valor, value_->Estorno()); }
  HRESULT STDMETHODCALLTYPE put_Estorno(VARIANT_BOOL* valor) noexcept override {
    return Let(valor, [&] { value_->Estorno(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_Estornado(VARIANT_BOOL* valor) noexcept override {
    return Get(valor, value_->Estornado());
  }
  HRESULT STDMETHODCALLTYPE put_Estornado(VARIANT_BOOL* valor) noexcept override {
    return Let(valor, [&] { value_->Estornado(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_IdUsuario(long* valor) noexcept override { return Get(valor, value_->IdUsuario()); }
  HRESULT STDMETHODCALLTYPE put_IdUsuario(long* valor) noexcept override {
    return Let(valor, [&] { value_->IdUsuario(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_Transferencia(unsigned char* valor) noexcept override {
    return Get(valor, value_->Transferencia());
  }
  HRESULT STDMETHODCALLTYPE put_Transferencia(unsigned char* valor) noexcept override {
    return Let(valor, [&] { value_->Transferencia(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_Realizado(BSTR* valor) noexcept override { return Get(valor, value_->Realizado()); }
  HRESULT STDMETHODCALLTYPE put_Realizado(BSTR* valor) noexcept override {
    return Let(valor, [&] { value_->Realizado(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_IdConcorrencia(long* valor) noexcept override {
    return Get(valor, value_->IdConcorrencia());
  }
  HRESULT STDMETHODCALLTYPE put_IdConcorrencia(long* valor) noexcept override {
    return Let(valor, [&] { value_->IdConcorrencia(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_CodCentroCusto(BSTR* valor) noexcept override {
    return Get(valor, value_->CodCentroCusto());
  }
  HRESULT STDMETHODCALLTYPE put_CodCentroCusto(BSTR* valor) noexcept override {
    return Let(valor, [&] { value_->CodCentroCusto(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_IdParceiroComl(long* valor) noexcept override {
    return Get(valor, value_->IdParceiroComl());
  }
  HRESULT STDMETHODCALLTYPE put_IdParceiroComl(long* valor) noexcept override {
    return Let(valor, [&] { value_->IdParceiroComl(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_SaldoConta(CURRENCY* valor) noexcept override {
    return Get(valor, value_->SaldoConta());
  }
  HRESULT STDMETHODCALLTYPE put_SaldoConta(CURRENCY* valor) noexcept override {
    return Let(valor, [&] { value_->SaldoConta(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_SaldoRecDesp(CURRENCY* valor) noexcept override {
    return Get(valor, value_->SaldoRecDesp());
  }
  HRESULT STDMETHODCALLTYPE put_SaldoRecDesp(CURRENCY* valor) noexcept override {
    return Let(valor, [&] { value_->SaldoRecDesp(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_SaldoCentroCusto(CURRENCY* valor) noexcept override {
    return Get(valor, value_->SaldoCentroCusto());
  }
  HRESULT STDMETHODCALLTYPE put_SaldoCentroCusto(CURRENCY* valor) noexcept override {
    return Let(valor, [&] { value_->SaldoCentroCusto(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_SaldoParceiroComl(CURRENCY* valor) noexcept override {
    return Get(valor, value_->SaldoParceiroComl());
  }
  HRESULT STDMETHODCALLTYPE put_SaldoParceiroComl(CURRENCY* valor) noexcept override {
    return Let(valor, [&] { value_->SaldoParceiroComl(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_SaldoGlobal(CURRENCY* valor) noexcept override {
    return Get(valor, value_->SaldoGlobal());
  }
  HRESULT STDMETHODCALLTYPE put_SaldoGlobal(CURRENCY* valor) noexcept override {
    return Let(valor, [&] { value_->SaldoGlobal(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_DataReferencia(VARIANT* valor) noexcept override {
    return Get(valor, value_->DataReferencia());
  }
  HRESULT STDMETHODCALLTYPE put_DataReferencia(VARIANT* valor) noexcept override {
    return Let(valor, [&] { value_->DataReferencia(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_DataVencimento(VARIANT* valor) noexcept override {
    return Get(valor, value_->DataVencimento());
  }
  HRESULT STDMETHODCALLTYPE put_DataVencimento(VARIANT* valor) noexcept override {
    return Let(valor, [&] { value_->DataVencimento(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_ValorPago(CURRENCY* valor) noexcept override { return Get(valor, value_->ValorPago()); }
  HRESULT STDMETHODCALLTYPE put_ValorPago(CURRENCY* valor) noexcept override {
    return Let(valor, [&] { value_->ValorPago(From(*valor)); });
  }

  HRESULT STDMETHODCALLTYPE Validar(VARIANT_BOOL* completo) noexcept override;
  HRESULT STDMETHODCALLTYPE CarregarDeRegistro(IDispatch** rs) noexcept override;
  HRESULT STDMETHODCALLTYPE Copiar(_CLancamento** copia) noexcept override;
};

}  // namespace tsv::com
