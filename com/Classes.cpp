#include "Classes.h"

#include "BaixaObject.h"
#include "LancamentoObject.h"
#include "TesoviaObject.h"
#include "TransferenciaObject.h"

namespace tsv::com {
namespace {

template <typename Created, typename Interface>
IUnknown* Create() {
  return static_cast<Interface*>(new Created);
}

}  // namespace

std::span<const Class> Classes() {
  static const Class classes[] = {
      {CLSID_Tesovia, L"TesoviaLib2.Tesovia", L"Tesovia: livro de fluxo de caixa", Create<TesoviaObject, _Tesovia>},
      {CLSID_CLancamento, L"TesoviaLib2.CLancamento", L"Tesovia: lançamento", Create<LancamentoObject, _CLancamento>},
      {CLSID_CTransferencia, L"TesoviaLib2.CTransferencia", L"Tesovia: pedido de transferência",
       Create<TransferenciaObject, _CTransferencia>},
      {CLSID_CBaixa, L"TesoviaLib2.CBaixa", L"Tesovia: pedido de baixa", Create<BaixaObject, _CBaixa>}};
  return classes;
}

}  // namespace tsv::com
