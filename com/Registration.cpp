#include "Registration.h"

#include <string>

#include "Classes.h"
#include "Failure.h"

// In the platform's library, but not in every compiler's headers.
extern "C" {
HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* helpFolder);
HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID id, WORD major, WORD minor, LCID language, SYSKIND kind);
}

namespace tsv::com {
namespace {

constexpr const wchar_t* kClasses = L"Software\\Classes\\";

std::wstring Written(REFGUID id) {
  wchar_t text[40] = {};
  StringFromGUID2(id, text, 40);
  return text;
}

std::wstring ModulePath() {
  wchar_t path[MAX_PATH] = {};
  if (GetModuleFileNameW(ModuleHandle(), path, MAX_PATH) == 0) Raise(RuntimeError::Internal);
  return path;
}

// The part of the registry that holds classes: the machine's or the user's.
class Registry {
 public:
  explicit Registry(HKEY root) : root_(root) {}

  // False where the user may not write; everything else that fails raises.
  bool Set(const std::wstring& key, const wchar_t* name, const std::wstring& value) const {
    HKEY opened = nullptr;
    const LSTATUS status =
        RegCreateKeyExW(root_, (kClasses + key).c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, &opened, nullptr);
    if (status == ERROR_ACCESS_DENIED) return false;
    if (status != ERROR_SUCCESS) Raise(RuntimeError::Internal);
    const auto* bytes = reinterpret_cast<const BYTE*>(value.c_str());
    const auto size = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    const LSTATUS written = RegSetValueExW(opened, name, 0, REG_SZ, bytes, size);
    RegCloseKey(opened);
    if (written != ERROR_SUCCESS) Raise(RuntimeError::Internal);
    return true;
  }

  void Remove(const std::wstring& key) const { RegDeleteTreeW(root_, (kClasses + key).c_str()); }

 private:
  HKEY root_;
};

bool RegisterClass(const Registry& registry, const Class& of, const std::wstring& library) {
  const std::wstring key = L"CLSID\\" + Written(of.id);
  if (!registry.Set(key, nullptr, of.description)) return false;
  registry.Set(key + L"\\InprocServer32", nullptr, ModulePath());
  registry.Set(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
  registry.Set(key + L"\\ProgID", nullptr, of.progId);
  registry.Set(key + L"\\TypeLib", nullptr, library);
  registry.Set(key + L"\\Version", nullptr, L"2.0");
  registry.Set(of.progId, nullptr, of.description);
  registry.Set(std::wstring(of.progId) + L"\\CLSID", nullptr, Written(of.id));
  return true;
}

bool RegisterClasses(const Registry& registry) {
  const std::wstring library = Written(LIBID_TesoviaLib2);
  for (const Class& of : Classes()) {
    if (!RegisterClass(registry, of, library)) return false;
  }
  return true;
}

void RegisterDescription(bool forTheMachine) {
  const ComPointer<ITypeLib> library = TypeLibrary();
  if (!library) Raise(RuntimeError::Internal);
  std::wstring path = ModulePath();
  const HRESULT outcome = forTheMachine ? RegisterTypeLib(library.Get(), path.data(), nullptr)
                                        : RegisterTypeLibForUser(library.Get(), path.data(), nullptr);
  if (FAILED(outcome)) Raise(RuntimeError::Internal);
}

}  // namespace

HRESULT Register() noexcept {
  return Guarded(IID_NULL, [] {
    const bool forTheMachine = RegisterClasses(Registry(HKEY_LOCAL_MACHINE));
    if (!forTheMachine && !RegisterClasses(Registry(HKEY_CURRENT_USER))) Raise(RuntimeError::Internal);
    RegisterDescription(forTheMachine);
  });
}

HRESULT Unregister() noexcept {
  return Guarded(IID_NULL, [] {
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
      const Registry registry(root);
      for (const Class& of : Classes()) {
        registry.Remove(L"CLSID\\" + Written(of.id));
        registry.Remove(of.progId);
      }
    }
    constexpr WORD kMajor = 2;
    constexpr SYSKIND kind = sizeof(void*) == sizeof(LONGLONG) ? SYS_WIN64 : SYS_WIN32;
    UnRegisterTypeLib(LIBID_TesoviaLib2, kMajor, 0, LOCALE_NEUTRAL, kind);
    UnRegisterTypeLibForUser(LIBID_TesoviaLib2, kMajor, 0, LOCALE_NEUTRAL, kind);
  });
}

}  // namespace tsv::com
