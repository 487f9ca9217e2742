#include "ClassFactory.h"

#include <memory>

#include "CountedObject.h"
#include "Failure.h"
#include "WindowsHost.h"
#include "common/Session.h"

namespace tsv::com {
namespace {

class ClassFactory final : public CountedObject<IClassFactory> {
 public:
  explicit ClassFactory(const Class& of) : class_(of) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) noexcept override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    HRESULT found = S_OK;
    const HRESULT made = Guarded(IID_IClassFactory, [&] {
      UseScreen();
      const ComPointer<IUnknown> created(class_.create());
      found = created->QueryInterface(id, object);
    });
    return FAILED(made) ? made : found;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override {
    lock ? AddLock() : ReleaseLock();
    return S_OK;
  }

 private:
  // The session's host is the screen of the thread that makes the first object.
  static void UseScreen() {
    std::shared_ptr<Host>& host = CurrentSession().host;
    if (!dynamic_cast<WindowsHost*>(host.get())) host = std::make_shared<WindowsHost>();
  }

  const Class& class_;
};

}  // namespace

IClassFactory* NewClassFactory(const Class& of) { return new ClassFactory(of); }

}  // namespace tsv::com
