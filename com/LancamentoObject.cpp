#include "LancamentoObject.h"

#include "db/dao/windows/AutomationRecordset.h"

namespace tsv::com {

HRESULT STDMETHODCALLTYPE LancamentoObject::Validar(VARIANT_BOOL* completo) noexcept {
  if (!completo) return E_POINTER;
  return Do([&] { Put(completo, value_->Validar()); });
}

HRESULT STDMETHODCALLTYPE LancamentoObject::CarregarDeRegistro(IDispatch** rs) noexcept {
  if (!rs) return E_POINTER;
  return Do([&] {
    value_->CarregarDeRegistro(db::dao::AutomationRecordset(db::dao::LateBound(ComPointer<IDispatch>::Sharing(*rs))));
  });
}

HRESULT STDMETHODCALLTYPE LancamentoObject::Copiar(_CLancamento** copia) noexcept {
  if (!copia) return E_POINTER;
  *copia = nullptr;
  return Do([&] { *copia = new LancamentoObject(value_->Copiar()); });
}

}  // namespace tsv::com
