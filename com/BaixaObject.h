#pragma once

#include "CBaixa.h"
#include "ValueObject.h"

namespace tsv::com {

// A request for a settlement.
class BaixaObject final : public ValueObject<_CBaixa, tsv::CBaixa> {
 public:
  using ValueObject::ValueObject;

  HRESULT STDMETHODCALLTYPE get_TipoBaixa(::TIPO_BAIXA* valor) noexcept override {
    return Get(valor, value_->TipoBaixa());
  }
  HRESULT STDMETHODCALLTYPE put_TipoBaixa(::TIPO_BAIXA* valor) noexcept override {
    return Let(valor, [&] { value_->TipoBaixa(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_DataRealizacao(VARIANT* valor) noexcept override {
    return Get(valor, value_->DataRealizacao());
  }
  HRESULT STDMETHODCALLTYPE put_DataRealizacao(VARIANT* valor) noexcept override {
    return Let(valor, [&] { value_->DataRealizacao(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_ValorBaixado(CURRENCY* valor) noexcept override {
    return Get(valor, value_->ValorBaixado());
  }
  HRESULT STDMETHODCALLTYPE put_ValorBaixado(CURRENCY* valor) noexcept override {
    return Let(valor, [&] { value_->ValorBaixado(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_IdLancamento(long* valor) noexcept override {
    return Get(valor, value_->IdLancamento());
  }
  HRESULT STDMETHODCALLTYPE put_IdLancamento(long* valor) noexcept override {
    return Let(valor, [&] { value_->IdLancamento(From(*valor)); });
  }
  HRESULT STDMETHODCALLTYPE get_IdConcorrencia(long* valor) noexcept override {
    return Get(valor, value_->IdConcorrencia());
  }
  HRESULT STDMETHODCALLTYPE put_IdConcorrencia(long* valor) noexcept override {
    return Let(valor, [&] { value_->IdConcorrencia(From(*valor)); });
  }
};

}  // namespace tsv::com
