#pragma once

#include <atomic>

#include "Failure.h"
#include "Invoking.h"
#include "Module.h"

namespace tsv::com {

// What all objects with a dual interface have in common.
template <typename Interface>
class Object : public Interface, public ISupportErrorInfo {
 public:
  Object() { AddLock(); }
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept final {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (id == IID_IUnknown || id == IID_IDispatch || id == __uuidof(Interface)) {
      *object = static_cast<Interface*>(this);
    } else if (id == IID_ISupportErrorInfo) {
      *object = static_cast<ISupportErrorInfo*>(this);
    } else {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept final { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept final {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept final {
    if (!count) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** description) noexcept final {
    if (!description) return E_POINTER;
    *description = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    *description = ComPointer<ITypeInfo>(Description()).Detach();
    return *description ? S_OK : TYPE_E_ELEMENTNOTFOUND;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept final {
    return Description() ? Description()->GetIDsOfNames(names, count, ids) : TYPE_E_ELEMENTNOTFOUND;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                   EXCEPINFO* report, UINT* wrongArgument) noexcept final {
    return InvokeMember(Description().Get(), static_cast<Interface*>(this), member, flags, arguments, result, report,
                        wrongArgument);
  }

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) noexcept final {
    return id == __uuidof(Interface) ? S_OK : S_FALSE;
  }

 protected:
  virtual ~Object() { ReleaseLock(); }

  // Runs a member's work; what it raises is reported to the client.
  template <typename Action>
  static HRESULT Do(Action&& action) noexcept {
    return Guarded(__uuidof(Interface), std::forward<Action>(action));
  }

 private:
  const ComPointer<ITypeInfo>& Description() {
    if (!description_) description_ = InterfaceDescription(__uuidof(Interface));
    return description_;
  }

  std::atomic<ULONG> references_ = 1;
  ComPointer<ITypeInfo> description_;
};

}  // namespace tsv::com
