#include "Module.h"

#include <atomic>

namespace tsv::com {
namespace {

std::atomic<long> locks = 0;
std::atomic<bool> stays = false;

}  // namespace

HMODULE ModuleHandle() noexcept {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&ModuleHandle), &module);
  return module;
}

void AddLock() noexcept {
  ++locks;
  if (stays.exchange(true)) return;
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<LPCWSTR>(&ModuleHandle), &module);
}

void ReleaseLock() noexcept { --locks; }

bool HasLocks() noexcept { return locks != 0; }

ComPointer<ITypeLib> TypeLibrary() {
  wchar_t path[MAX_PATH] = {};
  ComPointer<ITypeLib> library;
  if (GetModuleFileNameW(ModuleHandle(), path, MAX_PATH) != 0) {
    LoadTypeLibEx(path, REGKIND_NONE, library.Receive());
  }
  return library;
}

ComPointer<ITypeInfo> InterfaceDescription(REFIID id) {
  const ComPointer<ITypeLib> library = TypeLibrary();
  ComPointer<ITypeInfo> dispatch;
  if (!library || FAILED(library->GetTypeInfoOfGuid(id, dispatch.Receive()))) return {};
  HREFTYPE reference = 0;
  ComPointer<ITypeInfo> description;
  // A dual interface stands in the description twice; its other half knows the virtual functions.
  if (FAILED(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference)) ||
      FAILED(dispatch->GetRefTypeInfo(reference, description.Receive()))) {
    return dispatch;
  }
  return description;
}

}  // namespace tsv::com
