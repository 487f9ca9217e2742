// Runs a VBScript file: script_host [--manifest MANIFEST] FILE [ARGUMENT...]. Text is UTF-8 on both sides. The script
// sees its arguments as Host.Argumento(n), from 1, and writes with WScript.Echo. An error is told with its line,
// number, source and description, and the exit code is then 1: the platform's own script hosts are silent where a test
// must not be. With a manifest the classes that it names are found without a registry.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "ScriptObject.h"
#include "types/Conversions.h"

#include <activscp.h>

namespace {

using tsv::com::ComPointer;
using tsv::com::OleValue;
using tsv::db::dao::TextOf;
using tsv::db::dao::ValueOf;

// What the script knows of the world besides the objects that it creates.
class HostObject final : public tsv::com::ScriptObject {
 public:
  explicit HostObject(std::vector<std::string> arguments) : arguments_(std::move(arguments)) {}

 private:
  enum : DISPID { kWrite = 1, kArgument };

  std::span<const Member> Members() const override {
    static constexpr Member members[] = {{L"Echo", kWrite}, {L"Argumento", kArgument}};
    return members;
  }
  OleValue Run(DISPID member, WORD, Arguments& given) override {
    if (member == kWrite) {
      std::printf("%s\n", tsv::ToText(ValueOf(given.at(0).Raw())).c_str());
      return {};
    }
    const auto place = static_cast<std::size_t>(tsv::ToLong(ValueOf(given.at(0).Raw())));
    return OleValue(tsv::Variant(place >= 1 && place <= arguments_.size() ? arguments_[place - 1] : std::string()));
  }

  std::vector<std::string> arguments_;
};

class Site final : public IActiveScriptSite {
 public:
  Site(std::string file, ComPointer<IDispatch> host) : file_(std::move(file)), host_(std::move(host)) {}

  bool Failed() const { return failed_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (!object) return E_POINTER;
    *object = id == IID_IUnknown || id == IID_IActiveScriptSite ? this : nullptr;
    return *object ? S_OK : E_NOINTERFACE;
  }
  // Lives on the stack of main, longer than the engine.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  HRESULT STDMETHODCALLTYPE GetLCID(LCID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR, DWORD wanted, IUnknown** item, ITypeInfo** description) override {
    if ((wanted & SCRIPTINFO_ITYPEINFO) != 0 && description) *description = nullptr;
    if ((wanted & SCRIPTINFO_IUNKNOWN) != 0) *item = ComPointer<IDispatch>(host_).Detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* error) override {
    failed_ = true;
    DWORD context = 0;
    ULONG line = 0;
    LONG column = 0;
    EXCEPINFO what = {};
    error->GetSourcePosition(&context, &line, &column);
    error->GetExceptionInfo(&what);
    std::printf("%s:%lu: %s [%s] 0x%08lX\n", file_.c_str(), line + 1, TextOf(what.bstrDescription).c_str(),
                TextOf(what.bstrSource).c_str(), static_cast<unsigned long>(what.scode));
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }

 private:
  std::string file_;
  ComPointer<IDispatch> host_;
  bool failed_ = false;
};

bool Run(const std::string& text, Site& site) {
  CLSID language;
  ComPointer<IActiveScript> engine;
  ComPointer<IActiveScriptParse> parser;
  if (FAILED(CLSIDFromProgID(L"VBScript", &language)) ||
      FAILED(CoCreateInstance(language, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IActiveScript), engine.ReceiveAny())) ||
      FAILED(engine->QueryInterface(__uuidof(IActiveScriptParse), parser.ReceiveAny()))) {
    std::puts("There is no VBScript here.");
    return false;
  }
  const OleValue source{tsv::Variant(text)};
  engine->SetScriptSite(&site);
  parser->InitNew();
  for (const wchar_t* name : {L"Host", L"WScript"}) engine->AddNamedItem(name, SCRIPTITEM_ISVISIBLE);
  const HRESULT parsed =
      parser->ParseScriptText(source.Raw().bstrVal, nullptr, nullptr, nullptr, 0, 0, 0, nullptr, nullptr);
  const HRESULT ran = SUCCEEDED(parsed) ? engine->SetScriptState(SCRIPTSTATE_CONNECTED) : parsed;
  engine->Close();
  return SUCCEEDED(ran) && !site.Failed();
}

bool Activate(const std::string& manifest) {
  ACTCTXA context = {};
  context.cbSize = sizeof context;
  context.lpSource = manifest.c_str();
  const HANDLE made = CreateActCtxA(&context);
  ULONG_PTR cookie = 0;
  return made != INVALID_HANDLE_VALUE && ActivateActCtx(made, &cookie);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() > 2 && arguments[0] == "--manifest") {
    if (!Activate(arguments[1])) {
      std::printf("%s is no manifest.\n", arguments[1].c_str());
      return 2;
    }
    arguments.erase(arguments.begin(), arguments.begin() + 2);
  }
  if (arguments.empty()) {
    std::puts("script_host [--manifest MANIFEST] FILE [ARGUMENT...]");
    return 2;
  }
  const std::string script = arguments.front();
  arguments.erase(arguments.begin());
  std::ifstream file(script, std::ios::binary);
  if (!file) {
    std::printf("%s cannot be read.\n", script.c_str());
    return 2;
  }
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  CoInitialize(nullptr);
  const ComPointer<IDispatch> host(new HostObject(std::move(arguments)));
  Site site(script, host);
  const bool ok = Run(text, site);
  std::fflush(stdout);
  return ok ? 0 : 1;
}
