#pragma once

#include <atomic>
#include <span>
#include <vector>

#include "Module.h"

namespace tsv::com {

// An object for late-bound clients only: its members are found by name. What they raise is reported to the client.
class ScriptObject : public IDispatch {
 public:
  struct Member {
    const wchar_t* name;
    DISPID id;
  };
  using Arguments = std::vector<OleValue>;  // first to last

  ScriptObject() { AddLock(); }
  ScriptObject(const ScriptObject&) = delete;
  ScriptObject& operator=(const ScriptObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept final;
  ULONG STDMETHODCALLTYPE AddRef() noexcept final { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept final;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept final;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept final { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept final;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                   EXCEPINFO* report, UINT* wrongArgument) noexcept final;

 protected:
  virtual ~ScriptObject() { ReleaseLock(); }

 private:
  virtual std::span<const Member> Members() const = 0;

  // Calls or reads a member, or sets it (the new value is then the last argument). An unknown one raises 438.
  virtual OleValue Run(DISPID member, WORD flags, Arguments& arguments) = 0;

  std::atomic<ULONG> references_ = 1;
};

// An object as the value of a member. Takes over the reference.
OleValue Returned(IDispatch* object);

}  // namespace tsv::com
