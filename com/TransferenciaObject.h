#pragma once

#include "CTransferencia.h"
#include "ValueObject.h"

namespace tsv::com {

// A request for a transfer.
class TransferenciaObject final : public ValueObject<_CTransferencia, tsv::CTransferencia> {
 public:
  using ValueObject::ValueObject;

  HRESULT STDMETHODCALLTYPE get_CodContaOrigem(BSTR* valor) noexcept override {
    return Get(valor, value_->CodContaOrigem());
  }
  HRESULT STDMETHODCALLTYPE put_CodContaOrigem(BSTR* valor) noexcept override {
    return Let(valor, [&] { value_->CodContaOrigem(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_CodContaDestino(BSTR* valor) noexcept override {
    return Get(valor, value_->CodContaDestino());
  }
  HRESULT STDMETHODCALLTYPE put_CodContaDestino(BSTR* valor) noexcept override {
    return Let(valor, [&] { value_->CodContaDestino(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_Valor(CURRENCY* valor) noexcept override { return Get(valor, value_->Valor()); }
  HRESULT STDMETHODCALLTYPE put_Valor(CURRENCY* valor) noexcept override {
    return Let(valor, [&] { value_->Valor(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_DataDaTransferencia(DATE* valor) noexcept override {
    return Get(valor, value_->DataDaTransferencia());
  }
  HRESULT STDMETHODCALLTYPE put_DataDaTransferencia(DATE* valor) noexcept override {
    return Let(valor, [&] { value_->DataDaTransferencia(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_HistoricoSaida(BSTR* valor) noexcept override {
    return Get(valor, value_->HistoricoSaida());
  }
  HRESULT STDMETHODCALLTYPE put_HistoricoSaida(BSTR* valor) noexcept override {
    return Let(valor, [&] { value_->HistoricoSaida(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_HistoricoEntrada(BSTR* valor) noexcept override {
    return Get(valor, value_->HistoricoEntrada());
  }
  HRESULT STDMETHODCALLTYPE put_HistoricoEntrada(BSTR* valor) noexcept override {
    return Let(valor, [&] { value_->HistoricoEntrada(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_DocumentoSaida(BSTR* valor) noexcept override {
    return Get(valor, value_->DocumentoSaida());
  }
  HRESULT STDMETHODCALLTYPE put_DocumentoSaida(BSTR* valor) noexcept override {
    return Let(valor, [&] { value_->DocumentoSaida(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_DocumentoEntrada(BSTR* valor) noexcept override {
    return Get(valor, value_->DocumentoEntrada());
  }
  HRESULT STDMETHODCALLTYPE put_DocumentoEntrada(BSTR* valor) noexcept override {
    return Let(valor, [&] { value_->DocumentoEntrada(From(*valor)); });
  }
};

}  // namespace tsv::com
