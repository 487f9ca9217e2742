#include "ScriptObject.h"

#include <algorithm>
#include <cwchar>

#include "Failure.h"

namespace tsv::com {

HRESULT STDMETHODCALLTYPE ScriptObject::GetTypeInfoCount(UINT* count) noexcept {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE ScriptObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept {
  std::fill_n(ids, count, DISPID_UNKNOWN);
  const auto members = Members();
  const auto found = std::find_if(members.begin(), members.end(),
                                  [&](const Member& member) { return _wcsicmp(member.name, names[0]) == 0; });
  if (found == members.end()) return DISP_E_UNKNOWNNAME;
  ids[0] = found->id;
  return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT STDMETHODCALLTYPE ScriptObject::Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* given,
                                               VARIANT* result, EXCEPINFO* report, UINT*) noexcept {
  if (result) VariantInit(result);
  const HRESULT outcome = Guarded(IID_IDispatch, [&] {
    Arguments arguments(given->cArgs);
    for (UINT i = 0; i < given->cArgs; ++i) {
      VariantCopyInd(&arguments[given->cArgs - 1 - i].Raw(), &given->rgvarg[i]);
    }
    OleValue value = Run(member, flags, arguments);
    if (result) *result = value.Detach();
  });
  return FAILED(outcome) ? TakeFailure(outcome, report) : S_OK;
}

OleValue Returned(IDispatch* object) {
  const ComPointer<IDispatch> owned(object);
  return OleValue(owned.Get());
}

}  // namespace tsv::com
