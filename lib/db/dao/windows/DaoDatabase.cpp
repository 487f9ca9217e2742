#include "db/dao/windows/DaoDatabase.h"

#include <deque>
#include <string>
#include <utility>

#include "db/EngineError.h"
#include "db/dao/windows/AutomationRecordset.h"
#include "db/dao/windows/LateBound.h"
#include "types/Conversions.h"

namespace tsv::db::dao {
namespace {

// One engine a thread: its transactions are those of its first workspace. It is never released, because a thread may
// leave its apartment before its own objects go.
const LateBound& Engine() {
  static thread_local LateBound* engine = nullptr;
  if (!engine) {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);  // does nothing in a thread that has its apartment
    engine = new LateBound(LateBound::Create({L"DAO.DBEngine.36", L"DAO.DBEngine.120"}));
  }
  return *engine;
}

class DaoQueryDef final : public QueryDef {
 public:
  DaoQueryDef(LateBound query, std::shared_ptr<StatementObserver> observer, std::string text)
      : query_(std::move(query)), observer_(std::move(observer)), text_(std::move(text)) {}

  Parameter& Parameters(std::size_t index) override { return Set(Variant(static_cast<std::int32_t>(index))); }
  Parameter& Parameters(std::string_view name) override { return Set(Variant(std::string(name))); }

  std::shared_ptr<Recordset> OpenRecordset() override {
    for (const Given& given : given_) {
      query_.ObjectFrom(L"Parameters", ArgumentsOf(given.key)).Put(L"Value", OleValue(given.parameter.Value));
    }
    if (observer_) observer_->AboutToRun(text_);
    auto recordset = std::make_shared<AutomationRecordset>(query_.ObjectFrom(L"OpenRecordset"));
    if (observer_) observer_->HasRun(text_, recordset->RecordCount());
    return recordset;
  }

 private:
  struct Given {
    Variant key;
    Parameter parameter;
  };

  Parameter& Set(Variant key) { return given_.emplace_back(Given{std::move(key), {}}).parameter; }

  LateBound query_;
  std::shared_ptr<StatementObserver> observer_;
  std::string text_;
  std::deque<Given> given_;  // as the caller named them, in his order
};

class DaoDatabase final : public Database {
 public:
  explicit DaoDatabase(LateBound database) : database_(std::move(database)) {}
  ~DaoDatabase() override {
    if (!open_) return;
    try {
      DaoDatabase::Close();
    } catch (...) {  // NOLINT(bugprone-empty-catch): nobody is left to be told
    }
  }

  // The caller's defaults are the engine's own, and are left to it.
  std::shared_ptr<Recordset> OpenRecordset(std::string_view sql, RecordsetTypeEnum type,
                                           std::int32_t options) override {
    RequireOpen();
    auto arguments = ArgumentsOf(std::string(sql));
    if (type != dbOpenDynaset || options != 0) arguments.emplace_back(Variant(std::int32_t{type}));
    if (options != 0) arguments.emplace_back(Variant(options));
    const std::shared_ptr<StatementObserver> observer = observer_;
    if (observer) observer->AboutToRun(sql);
    auto recordset =
        std::make_shared<AutomationRecordset>(database_.ObjectFrom(L"OpenRecordset", std::move(arguments)));
    if (observer) observer->HasRun(sql, recordset->RecordCount());
    return recordset;
  }

  void Execute(std::string_view sql, std::int32_t options) override {
    RequireOpen();
    const std::shared_ptr<StatementObserver> observer = observer_;
    if (observer) observer->AboutToRun(sql);
    database_.Call(L"Execute", ArgumentsOf(std::string(sql), options));
    if (observer) observer->HasRun(sql, RecordsAffected());
  }

  std::int32_t RecordsAffected() const override {
    RequireOpen();
    return ToLong(ValueOf(database_.Get(L"RecordsAffected").Raw()));
  }

  std::shared_ptr<QueryDef> QueryDefs(std::string_view name) override {
    RequireOpen();
    return std::make_shared<DaoQueryDef>(database_.ObjectFrom(L"QueryDefs", ArgumentsOf(std::string(name))), observer_,
                                         std::string(name));
  }

  std::shared_ptr<QueryDef> CreateQueryDef(std::string_view sql) override {
    RequireOpen();
    return std::make_shared<DaoQueryDef>(
        database_.ObjectFrom(L"CreateQueryDef", ArgumentsOf(std::string(), std::string(sql))), observer_,
        std::string(sql));
  }

  void Close() override {
    RequireOpen();
    open_ = false;
    database_.Call(L"Close");
  }

  void Observe(std::shared_ptr<StatementObserver> observer) override {
    RequireOpen();
    observer_ = std::move(observer);
  }

 private:
  void RequireOpen() const {
    if (!open_) Raise(EngineError::ObjectClosed);
  }

  bool IsOpen() const override { return open_; }
  void Begin() override { InWorkspace(L"BeginTrans", "BeginTrans"); }
  void Commit() override { InWorkspace(L"CommitTrans", "CommitTrans"); }
  void Rollback() override { InWorkspace(L"Rollback", "Rollback"); }

  void InWorkspace(const wchar_t* member, std::string_view observed) {
    const std::shared_ptr<StatementObserver> observer = observer_;
    if (observer) observer->AboutToRun(observed);
    Engine().ObjectFrom(L"Workspaces", ArgumentsOf(std::int32_t{0})).Call(member);
    if (observer) observer->HasRun(observed, 0);
  }

  LateBound database_;
  std::shared_ptr<StatementObserver> observer_;
  bool open_ = true;
};

}  // namespace

std::shared_ptr<Database> OpenWithLegacyEngine(std::string_view path, bool exclusive, bool readOnly,
                                               std::string_view connect) {
  if (!Engine()) return nullptr;
  return std::make_shared<DaoDatabase>(
      Engine().ObjectFrom(L"OpenDatabase", ArgumentsOf(std::string(path), exclusive, readOnly, std::string(connect))));
}

}  // namespace tsv::db::dao
