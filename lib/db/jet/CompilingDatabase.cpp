#include "db/jet/CompilingDatabase.h"

#include <algorithm>
#include <utility>

#include "db/EngineError.h"
#include "types/Text.h"

namespace tsv::db::jet {
namespace {

// A query of the database, or a client's text. Once the database is closed it raises 3420.
template <typename Query>
class Definition final : public QueryDef {
 public:
  template <typename Names>
  Definition(std::weak_ptr<CompilingDatabase> database, const Query& query, const Names& names)
      : database_(std::move(database)), query_(query) {
    parameters_.reserve(names.size());
    for (const auto& name : names) parameters_.push_back({std::string(name), Empty()});
  }

  std::shared_ptr<Recordset> OpenRecordset() override {
    const auto database = database_.lock();
    if (!database) Raise(EngineError::ObjectClosed);
    const auto missing = std::count_if(parameters_.begin(), parameters_.end(),
                                       [](const Parameter& parameter) { return IsEmpty(parameter.Value); });
    if (missing > 0) Raise(EngineError::TooFewParameters, std::to_string(missing));
    return database->Open(query_, parameters_);
  }

 private:
  std::weak_ptr<CompilingDatabase> database_;
  const Query query_;
};

std::int32_t RowsKnown(std::int32_t affected) { return affected; }
std::int32_t RowsKnown(const std::shared_ptr<Recordset>& recordset) { return recordset->RecordCount(); }

}  // namespace

void CompilingDatabase::RequireOpen() const {
  if (!IsOpen()) Raise(EngineError::ObjectClosed);
}

template <typename Action>
auto CompilingDatabase::Observed(std::string_view text, Action&& action) {
  RequireOpen();
  const std::shared_ptr<StatementObserver> observer = observer_;
  if (observer) observer->AboutToRun(text);
  auto result = action();
  if (observer) observer->HasRun(text, RowsKnown(result));
  return result;
}

// Runs what belongs to the open levels, if there are any, and notices when the engine gives them up.
template <typename Action>
auto CompilingDatabase::InTransaction(Action&& action) {
  if (lost_) throw *lost_;
  try {
    return action();
  } catch (const Erro& erro) {
    if (level_ > 0 && HasLostTransaction()) lost_ = erro;
    throw;
  }
}

std::shared_ptr<Recordset> CompilingDatabase::OpenRecordset(std::string_view sql, RecordsetTypeEnum type,
                                                            std::int32_t /*options: every recordset is read-only*/) {
  return Observed(sql, [&] { return InTransaction([&] { return Select(sql, type, nullptr); }); });
}

std::shared_ptr<Recordset> CompilingDatabase::Open(const std::string& sql, const Parameters& parameters) {
  return Observed(sql, [&] { return InTransaction([&] { return Select(sql, dbOpenDynaset, &parameters); }); });
}

std::shared_ptr<Recordset> CompilingDatabase::Open(const StoredQuery& query, const Parameters& parameters) {
  return Observed(query.name, [&] {
    return InTransaction([&] {
      LetGoOfStreams();
      return Select(query, parameters);
    });
  });
}

void CompilingDatabase::Execute(std::string_view sql, std::int32_t /*options: a statement always fails as a whole*/) {
  affected_ = 0;
  affected_ = Observed(sql, [&] { return InTransaction([&] { return Change(sql); }); });
}

std::int32_t CompilingDatabase::RecordsAffected() const {
  RequireOpen();
  return affected_;
}

// An observer may step in before any statement, so it sees them go one by one.
void CompilingDatabase::Announce(const std::vector<std::string_view>& next, const QueryCall* query) {
  if (level_ > 0 && !observer_) InTransaction([&] { SendAhead(next, query); });
}

std::shared_ptr<QueryDef> CompilingDatabase::QueryDefs(std::string_view name) {
  RequireOpen();
  const StoredQuery* query = FindStoredQuery(name);
  if (!query) Raise(EngineError::ItemNotFound, name);
  return std::make_shared<Definition<StoredQuery>>(weak_from_this(), *query, query->parameters);
}

std::shared_ptr<QueryDef> CompilingDatabase::CreateQueryDef(std::string_view sql) {
  RequireOpen();
  return std::make_shared<Definition<std::string>>(weak_from_this(), std::string(sql), ParametersOf(sql));
}

void CompilingDatabase::Close() {
  RequireOpen();
  for (const auto& weak : std::exchange(streams_, {})) {
    if (const auto stream = weak.lock()) stream->Abandon();
  }
  CloseEngine();  // rolls back what is open
  level_ = 0;
  lost_.reset();
}

void CompilingDatabase::Observe(std::shared_ptr<StatementObserver> observer) {
  RequireOpen();
  observer_ = std::move(observer);
}

std::shared_ptr<Recordset> CompilingDatabase::Stream(FieldDescriptions fields, std::unique_ptr<RowSource> source) {
  auto stream = std::make_shared<StreamedRecordset>(std::move(fields), std::move(source));
  std::erase_if(streams_, [](const auto& other) { return other.expired(); });
  streams_.push_back(stream);
  return stream;
}

// An open stream holds an old state of the ledger, from which nobody should compute, and its connection's attention.
void CompilingDatabase::LetGoOfStreams() {
  for (const auto& weak : std::exchange(streams_, {})) {
    if (const auto stream = weak.lock()) stream->LetGo();
  }
}

void CompilingDatabase::RequireExecutable(const Compiled& compiled) {
  if (compiled.kind == StatementKind::Select) Raise(EngineError::CannotExecuteSelect);
  if (!compiled.names.empty()) Raise(EngineError::TooFewParameters, std::to_string(compiled.names.size()));
}

void CompilingDatabase::RequireSelect(const Compiled& compiled, const Parameters* parameters) {
  if (compiled.kind != StatementKind::Select) Raise(EngineError::InvalidOperation);
  if (!parameters && !compiled.names.empty())
    Raise(EngineError::TooFewParameters, std::to_string(compiled.names.size()));
}

const Variant& CompilingDatabase::ValueOf(const ParameterSlot& slot, const Parameters* parameters) const {
  if (slot.literal) return lexed_.literals[*slot.literal];
  for (const QueryDef::Parameter& parameter : *parameters) {
    if (text::CompareFolded(parameter.Name, slot.name) == 0) return parameter.Value;
  }
  Raise(EngineError::ItemNotFound, slot.name);
}

void CompilingDatabase::BeginLevel() {
  LetGoOfStreams();
  BeginOn(level_);
  ++level_;
}

void CompilingDatabase::CommitLevel() {
  LetGoOfStreams();
  CommitTo(level_ - 1);
  if (--level_ == 0) madeTables_ = false;
}

void CompilingDatabase::UndoLevel() {
  // Statements on tables that are gone again are of no use, and the next table made may bring back their version.
  if (std::exchange(madeTables_, false)) ForgetCatalog();
  --level_;
  const auto settle = [this] {
    if (level_ == 0 || !HasLostTransaction()) lost_.reset();
  };
  try {
    LetGoOfStreams();
    UndoTo(level_);
  } catch (...) {
    settle();
    throw;
  }
  settle();
}

void CompilingDatabase::Begin() {
  const int before = level_;
  try {
    Observed("BeginTrans", [&] { return InTransaction([&] { return BeginLevel(), 0; }); });
  } catch (...) {
    if (level_ > before) UndoLevel();
    throw;
  }
}

void CompilingDatabase::Commit() {
  bool committed = false;
  try {
    Observed("CommitTrans", [&] {
      if (level_ == 0) Raise(EngineError::NoTransaction);
      InTransaction([&] { CommitLevel(); });
      committed = true;
      return 0;
    });
  } catch (...) {
    if (!committed) throw;  // an observer cannot take back what is done, so it must not look undone
  }
}

void CompilingDatabase::Rollback() {
  const int before = level_;
  try {
    Observed("Rollback", [&] {
      if (level_ == 0) Raise(EngineError::NoTransaction);
      return UndoLevel(), 0;
    });
  } catch (...) {
    if (level_ == before && level_ > 0) UndoLevel();  // an observer cannot keep a level open
    throw;
  }
}

}  // namespace tsv::db::jet
