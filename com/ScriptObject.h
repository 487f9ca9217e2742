#pragma once

#include <span>
#include <vector>

#include "CountedObject.h"

namespace tsv::com {

// An object for late-bound clients only: its members are found by name. What they raise is reported to the client.
class ScriptObject : public CountedObject<IDispatch> {
 public:
  struct Member {
    const wchar_t* name;
    DISPID id;
  };
  using Arguments = std::vector<OleValue>;  // first to last

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept final;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept final { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept final;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                   EXCEPINFO* report, UINT* wrongArgument) noexcept final;

 private:
  virtual std::span<const Member> Members() const = 0;

  // Calls or reads a member, or sets it (the new value is then the last argument). An unknown one raises 438.
  virtual OleValue Run(DISPID member, WORD flags, Arguments& arguments) = 0;
};

// An object as the value of a member. Takes over the reference.
OleValue Returned(IDispatch* object);

}  // namespace tsv::com
