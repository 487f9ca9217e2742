#pragma once

#include <atomic>

#include "Module.h"

namespace tsv::com {

// An object with one interface, which lives as long as somebody holds it.
template <typename Interface>
class CountedObject : public Interface {
 public:
  CountedObject() { AddLock(); }
  CountedObject(const CountedObject&) = delete;
  CountedObject& operator=(const CountedObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept final {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (id != IID_IUnknown && id != __uuidof(Interface)) return E_NOINTERFACE;
    *object = static_cast<Interface*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept final { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept final {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~CountedObject() { ReleaseLock(); }

 private:
  std::atomic<ULONG> references_ = 1;
};

}  // namespace tsv::com
