// An automation server of the legacy engine's shape, over the embedded engine: DAO.DBEngine.36 for a machine that has
// none. A database x.mdb is the ledger x.mdb.tsv beside it. Each call of the engine, its workspace, databases and
// queries is written to the file that TSV_CALLS names, as it came: member, arguments, order.
#include <cstdlib>
#include <fstream>
#include <regex>

#include "Failure.h"
#include "RecordsetObject.h"
#include "ScriptObject.h"
#include "db/sqlite/LedgerDriver.h"
#include "types/Conversions.h"

namespace {

using namespace tsv;
using com::ComPointer;
using com::OleValue;
using com::Returned;
using com::ScriptObject;
using db::dao::ValueOf;

constexpr CLSID kEngineClass = {0x7d1c5a0e, 0x3b1f, 0x4a5e, {0x9c, 0x0b, 0x55, 0x0e, 0x6a, 0x4d, 0x21, 0x93}};
constexpr const wchar_t* kProgId = L"Software\\Classes\\DAO.DBEngine.36\\CLSID";

std::string Shown(const Variant& value) {
  if (IsEmpty(value)) return "Empty";
  if (IsNull(value)) return "Null";
  if (const auto* text = std::get_if<std::string>(&value)) return '"' + *text + '"';
  if (const auto* date = std::get_if<Date>(&value)) return '#' + date->ToIso() + '#';
  return ToText(value);
}

void Record(std::string_view member, const ScriptObject::Arguments& arguments) {
  static const std::regex now(R"(#[^#]*#( AS |As )DataHora)");  // the only text that differs from run to run
  const char* path = std::getenv("TSV_CALLS");
  if (!path) return;
  std::string line(member);
  line += '(';
  for (const OleValue& argument : arguments) {
    if (&argument != &arguments.front()) line += ", ";
    line += Shown(ValueOf(argument.Raw()));
  }
  std::ofstream(path, std::ios::app | std::ios::binary) << std::regex_replace(line, now, "#...#$1DataHora") << ")\n";
}

// An object whose calls are recorded under its name.
class Recorded : public ScriptObject {
 protected:
  explicit Recorded(std::string name) : name_(std::move(name)) {}
  virtual OleValue Answer(std::wstring_view member, Arguments& arguments) = 0;

 private:
  std::span<const Member> Members() const override = 0;

  OleValue Run(DISPID id, WORD, Arguments& arguments) final {
    for (const Member& member : Members()) {
      if (member.id != id) continue;
      const std::wstring_view wide = member.name;
      Record(name_ + "." + std::string(wide.begin(), wide.end()), arguments);
      return Answer(wide, arguments);
    }
    constexpr std::int32_t kNoSuchMember = 438;
    throw Erro(kNoSuchMember, "no such member");
  }
  std::string name_;
};

std::string TextAt(const ScriptObject::Arguments& arguments, std::size_t place) {
  return ToText(ValueOf(arguments.at(place).Raw()));
}
std::int32_t NumberAt(const ScriptObject::Arguments& arguments, std::size_t place, std::int32_t otherwise) {
  return place < arguments.size() ? ToLong(ValueOf(arguments[place].Raw())) : otherwise;
}

class ParameterObject final : public Recorded {
 public:
  ParameterObject(std::shared_ptr<db::QueryDef> query, db::QueryDef::Parameter& parameter)
      : Recorded("Parameter"), query_(std::move(query)), parameter_(parameter) {}

 private:
  std::span<const Member> Members() const override {
    static constexpr Member members[] = {{L"Value", DISPID_VALUE}};
    return members;
  }
  OleValue Answer(std::wstring_view, Arguments& arguments) override {
    parameter_.Value = ValueOf(arguments.at(0).Raw());
    return {};
  }
  std::shared_ptr<db::QueryDef> query_;
  db::QueryDef::Parameter& parameter_;
};

class QueryObject final : public Recorded {
 public:
  explicit QueryObject(std::shared_ptr<db::QueryDef> query) : Recorded("QueryDef"), query_(std::move(query)) {}

 private:
  std::span<const Member> Members() const override {
    static constexpr Member members[] = {{L"Parameters", 1}, {L"OpenRecordset", 2}};
    return members;
  }
  OleValue Answer(std::wstring_view member, Arguments& arguments) override {
    if (member == L"OpenRecordset") return Returned(com::NewRecordsetObject(query_->OpenRecordset()));
    const Variant key = ValueOf(arguments.at(0).Raw());
    const auto* name = std::get_if<std::string>(&key);
    auto& parameter = name ? query_->Parameters(*name) : query_->Parameters(static_cast<std::size_t>(ToLong(key)));
    return Returned(new ParameterObject(query_, parameter));
  }
  std::shared_ptr<db::QueryDef> query_;
};

class DatabaseObject final : public Recorded {
 public:
  explicit DatabaseObject(std::shared_ptr<db::Database> database)
      : Recorded("Database"), database_(std::move(database)) {}

 private:
  std::span<const Member> Members() const override {
    static constexpr Member members[] = {{L"OpenRecordset", 1},   {L"Execute", 2},        {L"QueryDefs", 4},
                                         {L"RecordsAffected", 3}, {L"CreateQueryDef", 5}, {L"Close", 6}};
    return members;
  }
  OleValue Answer(std::wstring_view member, Arguments& arguments) override {
    if (member == L"OpenRecordset") {
      const auto type = static_cast<db::RecordsetTypeEnum>(NumberAt(arguments, 1, db::dbOpenDynaset));
      return Returned(
          com::NewRecordsetObject(database_->OpenRecordset(TextAt(arguments, 0), type, NumberAt(arguments, 2, 0))));
    }
    if (member == L"RecordsAffected") return OleValue(Variant(database_->RecordsAffected()));
    if (member == L"QueryDefs") return Returned(new QueryObject(database_->QueryDefs(TextAt(arguments, 0))));
    if (member == L"CreateQueryDef") return Returned(new QueryObject(database_->CreateQueryDef(TextAt(arguments, 1))));
    if (member == L"Execute") {
      database_->Execute(TextAt(arguments, 0), NumberAt(arguments, 1, 0));
    } else {
      database_->Close();
    }
    return {};
  }
  std::shared_ptr<db::Database> database_;
};

class WorkspaceObject final : public Recorded {
 public:
  explicit WorkspaceObject(std::shared_ptr<db::DBEngine> engine) : Recorded("Workspace"), engine_(std::move(engine)) {}

 private:
  std::span<const Member> Members() const override {
    static constexpr Member members[] = {{L"BeginTrans", 1}, {L"CommitTrans", 2}, {L"Rollback", 3}};
    return members;
  }
  OleValue Answer(std::wstring_view member, Arguments&) override {
    db::Workspace& workspace = engine_->Workspaces(0);
    if (member == L"BeginTrans") workspace.BeginTrans();
    if (member == L"CommitTrans") workspace.CommitTrans();
    if (member == L"Rollback") workspace.Rollback();
    return {};
  }
  std::shared_ptr<db::DBEngine> engine_;
};

class EngineObject final : public Recorded {
 public:
  EngineObject() : Recorded("DBEngine") {}

 private:
  static std::shared_ptr<db::DBEngine> NewEngine() {
    std::vector<std::unique_ptr<db::Driver>> drivers;
    drivers.push_back(std::make_unique<db::sqlite::LedgerDriver>());
    return std::make_shared<db::DBEngine>(std::move(drivers));
  }

  std::span<const Member> Members() const override {
    static constexpr Member members[] = {{L"OpenDatabase", 1}, {L"Workspaces", 2}};
    return members;
  }
  OleValue Answer(std::wstring_view member, Arguments& arguments) override {
    if (member == L"Workspaces") return Returned(new WorkspaceObject(engine_));
    return Returned(
        new DatabaseObject(engine_->OpenDatabase(TextAt(arguments, 0) + ".tsv", NumberAt(arguments, 1, 0) != 0,
                                                 NumberAt(arguments, 2, 0) != 0, TextAt(arguments, 3))));
  }
  std::shared_ptr<db::DBEngine> engine_ = NewEngine();
};

class Factory final : public IClassFactory {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = id == IID_IUnknown || id == IID_IClassFactory ? this : nullptr;
    return *object ? S_OK : E_NOINTERFACE;
  }
  // One for the life of the module.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
    const ComPointer<IDispatch> engine(new EngineObject);
    return engine->QueryInterface(id, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

bool SetText(const std::wstring& key, const std::wstring& value, const wchar_t* name = nullptr) {
  const auto* bytes = reinterpret_cast<const BYTE*>(value.c_str());
  return RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, bytes,
                         static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

std::wstring ClassText() {
  wchar_t text[40] = {};
  StringFromGUID2(kEngineClass, text, 40);
  return text;
}

std::wstring ClassKey() { return L"Software\\Classes\\CLSID\\" + ClassText(); }

}  // namespace

extern "C" {

HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
  static Factory factory;
  *object = nullptr;
  return classId == kEngineClass ? factory.QueryInterface(id, object) : CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT STDAPICALLTYPE DllCanUnloadNow() { return S_FALSE; }

HRESULT STDAPICALLTYPE DllRegisterServer() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(com::ModuleHandle(), path, MAX_PATH);
  const std::wstring server = ClassKey() + L"\\InprocServer32";
  const bool written =
      SetText(server, path) && SetText(server, L"Apartment", L"ThreadingModel") && SetText(kProgId, ClassText());
  return written ? S_OK : E_FAIL;
}

HRESULT STDAPICALLTYPE DllUnregisterServer() {
  RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"Software\\Classes\\DAO.DBEngine.36");
  RegDeleteTreeW(HKEY_LOCAL_MACHINE, ClassKey().c_str());
  return S_OK;
}
}
