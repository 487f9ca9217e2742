#include "db/sqlite/SqliteDatabase.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "db/EngineError.h"
#include "db/KeptRecordset.h"
#include "db/sqlite/Schema.h"
#include "db/sqlite/SqliteDialect.h"
#include "db/sqlite/StoredQueries.h"

namespace tsv::db::sqlite {

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
  if (SqliteDatabase::IsOpen()) Close();
}

std::shared_ptr<Recordset> SqliteDatabase::Select(const StoredQuery& query, const Parameters& parameters) {
  if (!balances_) balances_.emplace(*connection_);
  const Snapshot snapshot(*this);
  return Answer(query, *balances_, parameters);
}

std::shared_ptr<Recordset> SqliteDatabase::Select(std::string_view sql, RecordsetTypeEnum type,
                                                  const Parameters* parameters) {
  const std::shared_ptr<Template> source = Compile(sql);
  RequireSelect(source->compiled, parameters);
  StatementLease statement(*connection_, source);
  if (!statement->IsReadOnly()) Raise(EngineError::InvalidOperation);
  const bool streams = type == dbOpenForwardOnly;
  Bind(*statement, source->compiled, parameters, streams ? Texts::Copied : Texts::Lent);
  LeasedRows rows(std::move(statement));
  if (streams) return Stream(source->fields, std::make_unique<LeasedRows>(std::move(rows)));
  std::vector<Variant> values;
  while (rows.Next(values)) {
  }
  return std::make_shared<KeptRecordset>(source->fields, std::move(values));
}

std::int32_t SqliteDatabase::Change(std::string_view sql) {
  const std::shared_ptr<Template> source = Compile(sql);
  RequireExecutable(source->compiled);
  LetGoOfStreams();
  if (source->compiled.kind == jet::StatementKind::CreateTable) {
    InOwnLevel([&] {
      MadeTable();
      CreateTable(*connection_, source->compiled.created);
    });
    return 0;
  }
  StatementLease statement(*connection_, source);
  Bind(*statement, source->compiled, nullptr, Texts::Lent);
  statement->Run();
  const std::int64_t changed = sqlite3_changes64(connection_->Handle());
  return static_cast<std::int32_t>(std::min<std::int64_t>(changed, std::numeric_limits<std::int32_t>::max()));
}

std::shared_ptr<Template> SqliteDatabase::Compile(std::string_view sql) {
  if (auto known = cache_.Find(sql, lexed_.literals)) return known;
  jet::Lex(sql, lexed_);
  const Catalog& catalog = CurrentCatalog();
  auto compiled = std::make_shared<Template>();
  jet::CompileInto(*compiled, lexed_, catalog, SqliteDialect());
  cache_.Add(compiled);
  return compiled;
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

void SqliteDatabase::ForgetCatalog() {
  cache_.Clear();
  catalogVersion_.reset();
}

void SqliteDatabase::Bind(Statement& statement, const jet::Compiled& compiled, const Parameters* parameters,
                          Texts texts) const {
  int place = 0;
  for (const jet::ParameterSlot& slot : compiled.parameters)
    BindStored(statement, ++place, ValueOf(slot, parameters), slot.type, texts);
}

std::vector<std::string> SqliteDatabase::ParametersOf(std::string_view sql) { return Compile(sql)->compiled.names; }

void SqliteDatabase::CloseEngine() {
  balances_.reset();
  cache_.Clear();
  transactions_.reset();
  connection_.reset();
}

void SqliteDatabase::BeginOn(int level) { (level == 0 ? transactions_->begin : transactions_->save).Run(); }

void SqliteDatabase::CommitTo(int level) { (level == 0 ? transactions_->commit : transactions_->release).Run(); }

void SqliteDatabase::UndoTo(int level) {
  if (connection_->InTransaction()) connection_->Execute(level == 0 ? "ROLLBACK" : "ROLLBACK TO nivel; RELEASE nivel");
}

}  // namespace tsv::db::sqlite
