#include <algorithm>

#include "ClassFactory.h"
#include "Failure.h"
#include "Registration.h"

using namespace tsv::com;

extern "C" {

HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  const auto classes = Classes();
  const auto found = std::find_if(classes.begin(), classes.end(), [&](const Class& of) { return of.id == classId; });
  if (found == classes.end()) return CLASS_E_CLASSNOTAVAILABLE;
  HRESULT queried = S_OK;
  const HRESULT made = Guarded(IID_IClassFactory, [&] {
    const ComPointer<IClassFactory> factory(NewClassFactory(*found));
    queried = factory->QueryInterface(id, object);
  });
  return FAILED(made) ? made : queried;
}

HRESULT STDAPICALLTYPE DllCanUnloadNow() { return HasLocks() ? S_FALSE : S_OK; }

HRESULT STDAPICALLTYPE DllRegisterServer() { return Register(); }

HRESULT STDAPICALLTYPE DllUnregisterServer() { return Unregister(); }
}
