#include "db/sqlite/SqliteDatabase.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "db/EngineError.h"
#include "db/KeptRecordset.h"
#include "db/sqlite/Schema.h"
#include "db/sqlite/StoredQueries.h"
#include "db/sqlite/StoredValue.h"
#include "db/sqlite/StreamedRecordset.h"
#include "types/Text.h"

namespace tsv::db::sqlite {
namespace {

// A query of the database, or a client's text. Once the database is closed it raises 3420.
template <typename Query>
class Definition final : public QueryDef {
 public:
  template <typename Names>
  Definition(std::weak_ptr<SqliteDatabase> database, Query query, const Names& names)
      : database_(std::move(database)), query_(std::move(query)) {
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
  std::weak_ptr<SqliteDatabase> database_;
  Query query_;
};

std::shared_ptr<Recordset> KeepRows(StatementLease& statement) {
  std::vector<Variant> values;
  while (statement->Step()) AppendRow(statement, values);
  return std::make_shared<KeptRecordset>(statement.Fields(), std::move(values));
}

const Variant& ValueOf(const std::string& name, const SqliteDatabase::Parameters& parameters) {
  for (const QueryDef::Parameter& parameter : parameters) {
    if (text::CompareFolded(parameter.Name, name) == 0) return parameter.Value;
  }
  Raise(EngineError::ItemNotFound, name);
}

std::int32_t RowsKnown(std::int32_t affected) { return affected; }
std::int32_t RowsKnown(const std::shared_ptr<Recordset>& recordset) { return recordset->RecordCount(); }

}  // namespace

// Holds one state of the file for several statements.
class SqliteDatabase::Snapshot {
 public:
  explicit Snapshot(SqliteDatabase& database) : database_(database), own_(!database.connection_->InTransaction()) {
    if (own_) database_.transactions_->beginReading.Run();
  }
  ~Snapshot() {
    if (!own_) return;
    sqlite3_stmt* commit = database_.transactions_->commit.Handle();
    sqlite3_step(commit);
    sqlite3_reset(commit);
  }
  Snapshot(const Snapshot&) = delete;
  Snapshot& operator=(const Snapshot&) = delete;

 private:
  SqliteDatabase& database_;
  bool own_;
};

SqliteDatabase::Transactions::Transactions(Connection& connection)
    : begin(connection, "BEGIN IMMEDIATE", true),
      beginReading(connection, "BEGIN", true),
      commit(connection, "COMMIT", true),
      save(connection, "SAVEPOINT nivel", true),
      release(connection, "RELEASE nivel", true) {}

SqliteDatabase::SqliteDatabase(std::unique_ptr<Connection> connection)
    : connection_(std::move(connection)), transactions_(std::in_place, *connection_) {}

SqliteDatabase::~SqliteDatabase() {
  if (IsOpen()) SqliteDatabase::Close();
}

void SqliteDatabase::RequireOpen() const {
  if (!IsOpen()) Raise(EngineError::ObjectClosed);
}

template <typename Action>
auto SqliteDatabase::Observed(std::string_view text, Action&& action) {
  RequireOpen();
  const std::shared_ptr<StatementObserver> observer = observer_;
  if (observer) observer->AboutToRun(text);
  auto result = action();
  if (observer) observer->HasRun(text, RowsKnown(result));
  return result;
}

// Runs what belongs to the open levels, if there are any, and notices when SQLite gives them up.
template <typename Action>
auto SqliteDatabase::InTransaction(Action&& action) {
  if (lost_) throw *lost_;
  try {
    return action();
  } catch (const Erro& erro) {
    if (level_ > 0 && !connection_->InTransaction()) lost_ = erro;
    throw;
  }
}

std::shared_ptr<Recordset> SqliteDatabase::OpenRecordset(std::string_view sql, RecordsetTypeEnum type,
                                                         std::int32_t /*options: every recordset is read-only*/) {
  return Observed(sql, [&] { return Select(sql, type, nullptr); });
}

std::shared_ptr<Recordset> SqliteDatabase::Open(const std::string& sql, const Parameters& parameters) {
  return Observed(sql, [&] { return Select(sql, dbOpenDynaset, &parameters); });
}

std::shared_ptr<Recordset> SqliteDatabase::Open(const StoredQuery* query, const Parameters& parameters) {
  return Observed(query->name, [&] {
    return InTransaction([&] {
      LetGoOfStreams();
      if (!balances_) balances_.emplace(*connection_);
      const Snapshot snapshot(*this);
      return query->open(*balances_, parameters);
    });
  });
}

std::shared_ptr<Recordset> SqliteDatabase::Select(std::string_view sql, RecordsetTypeEnum type,
                                                  const Parameters* parameters) {
  return InTransaction([&]() -> std::shared_ptr<Recordset> {
    const std::shared_ptr<Template> source = Compile(sql);
    const jet::Compiled& compiled = source->compiled;
    if (compiled.kind != jet::StatementKind::Select) Raise(EngineError::InvalidOperation);
    if (!parameters && !compiled.names.empty()) {
      Raise(EngineError::TooFewParameters, std::to_string(compiled.names.size()));
    }
    StatementLease statement(*connection_, source);
    if (!statement->IsReadOnly()) Raise(EngineError::InvalidOperation);
    const bool streams = type == dbOpenForwardOnly;
    Bind(*statement, compiled, parameters, streams ? Texts::Copied : Texts::Lent);
    return streams ? Stream(std::move(statement)) : KeepRows(statement);
  });
}

std::shared_ptr<Recordset> SqliteDatabase::Stream(StatementLease statement) {
  auto stream = std::make_shared<StreamedRecordset>(std::move(statement));
  std::erase_if(streams_, [](const auto& other) { return other.expired(); });
  streams_.push_back(stream);
  return stream;
}

// An open stream holds an old state of the file, from which SQLite lets nobody write and nobody should compute.
void SqliteDatabase::LetGoOfStreams() {
  for (const auto& weak : std::exchange(streams_, {})) {
    if (const auto stream = weak.lock()) stream->LetGo();
  }
}

void SqliteDatabase::Execute(std::string_view sql, std::int32_t /*options: a statement always fails as a whole*/) {
  affected_ = 0;
  affected_ = Observed(sql, [&] { return InTransaction([&] { return Change(sql); }); });
}

std::int32_t SqliteDatabase::Change(std::string_view sql) {
  const std::shared_ptr<Template> source = Compile(sql);
  const jet::Compiled& compiled = source->compiled;
  if (compiled.kind == jet::StatementKind::Select) Raise(EngineError::CannotExecuteSelect);
  if (!compiled.names.empty()) Raise(EngineError::TooFewParameters, std::to_string(compiled.names.size()));
  LetGoOfStreams();
  if (compiled.kind == jet::StatementKind::CreateTable) {
    CreateTable(compiled.created);
    return 0;
  }
  StatementLease statement(*connection_, source);
  Bind(*statement, compiled, nullptr, Texts::Lent);
  statement->Run();
  const std::int64_t changed = sqlite3_changes64(connection_->Handle());
  return static_cast<std::int32_t>(std::min<std::int64_t>(changed, std::numeric_limits<std::int32_t>::max()));
}

void SqliteDatabase::CreateTable(const Table& table) {
  BeginLevel();
  madeTables_ = true;
  try {
    sqlite::CreateTable(*connection_, table);
    CommitLevel();
  } catch (...) {
    UndoLevel();
    throw;
  }
}

std::shared_ptr<Template> SqliteDatabase::Compile(std::string_view sql) {
  if (auto known = cache_.Find(sql, lexed_.literals)) return known;
  jet::Lex(sql, lexed_);
  const Catalog& catalog = CurrentCatalog();
  return cache_.Compile(lexed_, catalog);
}

// Other connections create tables too.
const Catalog& SqliteDatabase::CurrentCatalog() {
  const std::int64_t version = connection_->Integer("PRAGMA schema_version");
  if (catalogVersion_ != version) {
    cache_.Clear();
    catalog_ = LoadCatalog(*connection_);
    catalogVersion_ = version;
  }
  return catalog_;
}

void SqliteDatabase::Bind(Statement& statement, const jet::Compiled& compiled, const Parameters* parameters,
                          Texts texts) const {
  int place = 0;
  for (const jet::ParameterSlot& slot : compiled.parameters) {
    const Variant& value = slot.literal ? lexed_.literals[*slot.literal] : ValueOf(slot.name, *parameters);
    BindStored(statement, ++place, value, slot.type, texts);
  }
}

std::int32_t SqliteDatabase::RecordsAffected() const {
  RequireOpen();
  return affected_;
}

std::shared_ptr<QueryDef> SqliteDatabase::QueryDefs(std::string_view name) {
  RequireOpen();
  const StoredQuery* query = FindStoredQuery(name);
  if (!query) Raise(EngineError::ItemNotFound, name);
  return std::make_shared<Definition<const StoredQuery*>>(weak_from_this(), query, query->parameters);
}

std::shared_ptr<QueryDef> SqliteDatabase::CreateQueryDef(std::string_view sql) {
  RequireOpen();
  const std::shared_ptr<Template> source = Compile(sql);
  return std::make_shared<Definition<std::string>>(weak_from_this(), std::string(sql), source->compiled.names);
}

void SqliteDatabase::Close() {
  RequireOpen();
  for (const auto& weak : std::exchange(streams_, {})) {
    if (const auto stream = weak.lock()) stream->Abandon();
  }
  balances_.reset();
  cache_.Clear();
  transactions_.reset();
  connection_.reset();  // rolls back what is open
  level_ = 0;
  lost_.reset();
}

void SqliteDatabase::Observe(std::shared_ptr<StatementObserver> observer) {
  RequireOpen();
  observer_ = std::move(observer);
}

void SqliteDatabase::BeginLevel() {
  LetGoOfStreams();
  (level_ == 0 ? transactions_->begin : transactions_->save).Run();
  ++level_;
}

void SqliteDatabase::CommitLevel() {
  (level_ == 1 ? transactions_->commit : transactions_->release).Run();
  EndLevel();
}

void SqliteDatabase::UndoLevel() {
  // Statements on tables that are gone again are of no use, and the next table made may bring back their version.
  if (std::exchange(madeTables_, false)) {
    cache_.Clear();
    catalogVersion_.reset();
  }
  const char* undo = level_ == 1 ? "ROLLBACK" : "ROLLBACK TO nivel; RELEASE nivel";
  EndLevel();
  if (connection_->InTransaction()) connection_->Execute(undo);
}

void SqliteDatabase::EndLevel() {
  if (--level_ > 0) return;
  lost_.reset();
  madeTables_ = false;
}

void SqliteDatabase::Begin() {
  const int before = level_;
  try {
    Observed("BeginTrans", [&] { return InTransaction([&] { return BeginLevel(), 0; }); });
  } catch (...) {
    if (level_ > before) UndoLevel();
    throw;
  }
}

void SqliteDatabase::Commit() {
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

void SqliteDatabase::Rollback() {
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

}  // namespace tsv::db::sqlite
