#include "db/postgres/libpq/ServerDatabase.h"

#include <algorithm>
#include <utility>

#include "db/DataTypes.h"
#include "db/EngineError.h"
#include "db/KeptRecordset.h"
#include "db/postgres/PostgresDialect.h"
#include "db/postgres/libpq/Schema.h"
#include "db/postgres/libpq/ServerValue.h"
#include "types/Conversions.h"

namespace tsv::db::postgres {
namespace {

void AppendRow(const Result& result, int row, const std::vector<FieldDescription>& fields,
               std::vector<Variant>& values) {
  int column = 0;
  for (const FieldDescription& field : fields)
    values.push_back(ReadValue(result, row, column++, ValueTypeOf(field.type)));
}

std::shared_ptr<Recordset> Kept(const Result& result, const FieldDescriptions& fields) {
  std::vector<Variant> values;
  values.reserve(static_cast<std::size_t>(result.Rows()) * fields->size());
  for (int row = 0; row < result.Rows(); ++row) AppendRow(result, row, *fields, values);
  return std::make_shared<KeptRecordset>(fields, std::move(values));
}

// The rows of a statement that the connection has started.
class StartedRows final : public RowSource {
 public:
  StartedRows(std::shared_ptr<Connection> connection, FieldDescriptions fields)
      : connection_(std::move(connection)), fields_(std::move(fields)) {}
  ~StartedRows() override {
    if (!ended_) connection_->Abandon();
  }

  bool Next(std::vector<Variant>& row) override {
    ended_ = true;  // unless there is a row
    const Result result = connection_->Next();
    if (result.Rows() == 0) return false;
    ended_ = false;
    AppendRow(result, 0, *fields_, row);
    return true;
  }

 private:
  std::shared_ptr<Connection> connection_;
  FieldDescriptions fields_;
  bool ended_ = false;
};

ValueType TypeOfParameter(std::string_view name) {
  if (name == "IdParceiro") return ValueType::Long;
  return name == "ParData" ? ValueType::Date : ValueType::Text;
}

Prepared Call(const StoredQuery& query) {
  Prepared call;
  std::string places;
  for (const std::string_view parameter : query.parameters) {
    call.types.push_back(ServerTypeOf(TypeOfParameter(parameter)));
    places += (places.empty() ? "$" : ", $") + std::to_string(call.types.size());
  }
  std::string columns;
  for (const FieldDescription& field : *query.fields)
    columns += (columns.empty() ? "" : ", ") + PostgresDialect().Name(field.name);
  call.sql = "SELECT " + columns + " FROM " + PostgresDialect().TableName(query.name) + "(" + places + ")";
  return call;
}

Values BoundCall(const jet::Parameters& parameters) {
  Values values;
  values.Reserve(parameters.size());
  for (const QueryDef::Parameter& parameter : parameters)
    AddValue(values, parameter.Value, TypeOfParameter(parameter.Name));
  return values;
}

}  // namespace

struct ServerDatabase::Template : jet::Template {
  explicit Template(std::weak_ptr<Connection> owner) : connection(std::move(owner)) {}
  ~Template() {
    if (const auto open = connection.lock()) open->Forget(prepared);
  }
  Template(const Template&) = delete;
  Template& operator=(const Template&) = delete;

  std::weak_ptr<Connection> connection;
  Prepared prepared;
};

ServerDatabase::ServerDatabase(std::shared_ptr<Connection> connection, bool readOnly)
    : connection_(std::move(connection)), readOnly_(readOnly) {
  storedQueries_.reserve(2);  // they stay where they are
}

ServerDatabase::~ServerDatabase() {
  if (ServerDatabase::IsOpen()) Close();
}

void ServerDatabase::RequireNothingAnnounced() const {
  if (!announced_.empty()) tsv::Raise(RuntimeError::Internal);
}

// What cannot be sent now fails when it is executed.
void ServerDatabase::SendAhead(const std::vector<std::string_view>& next, const QueryCall* query) {
  RequireNothingAnnounced();
  LetGoOfStreams();
  try {
    std::vector<std::pair<Prepared*, Values>> statements;
    for (const std::string_view sql : next) {
      const std::shared_ptr<Template> source = Compile(sql);
      RequireExecutable(source->compiled);
      if (source->compiled.kind == jet::StatementKind::CreateTable) return announced_.clear();
      statements.emplace_back(&source->prepared, Bound(source->compiled, nullptr));
      announced_.push_back({std::string(sql), source, {}, {}});
    }
    const StoredQuery* stored = query ? FindStoredQuery(query->name) : nullptr;
    if (stored) {
      statements.emplace_back(&CallOf(*stored), BoundCall(query->parameters));
      announced_.push_back({{}, nullptr, stored->kind, query->parameters});
    }
    connection_->SendTogether(std::move(statements));
  } catch (const Erro&) {
    announced_.clear();
    if (HasLostTransaction()) throw;
  } catch (...) {
    announced_.clear();
    throw;
  }
}

Result ServerDatabase::TakeAnswer() {
  const Announced answered = std::move(announced_.front());  // its text is in use until the answer is here
  announced_.pop_front();
  try {
    return connection_->Answer();
  } catch (...) {
    announced_.clear();
    throw;
  }
}

Prepared& ServerDatabase::CallOf(const StoredQuery& query) {
  const auto known = std::find_if(storedQueries_.begin(), storedQueries_.end(),
                                  [&](const auto& stored) { return stored.first == query.kind; });
  if (known != storedQueries_.end()) return known->second;
  return storedQueries_.emplace_back(query.kind, Call(query)).second;
}

std::shared_ptr<Recordset> ServerDatabase::Select(const StoredQuery& query, const Parameters& parameters) {
  const auto isNext = [&](const Announced& next) {
    return !next.source && next.kind == query.kind &&
           std::equal(parameters.begin(), parameters.end(), next.parameters.begin(), next.parameters.end(),
                      [](const auto& a, const auto& b) { return a.Name == b.Name && a.Value == b.Value; });
  };
  if (!announced_.empty() && isNext(announced_.front())) return Kept(TakeAnswer(), query.fields);
  RequireNothingAnnounced();
  return Kept(connection_->Run(CallOf(query), BoundCall(parameters)), query.fields);
}

std::shared_ptr<Recordset> ServerDatabase::Select(std::string_view sql, RecordsetTypeEnum type,
                                                  const Parameters* parameters) {
  RequireNothingAnnounced();
  LetGoOfStreams();
  const std::shared_ptr<Template> source = Compile(sql);
  RequireSelect(source->compiled, parameters);
  const Values values = Bound(source->compiled, parameters);
  if (type != dbOpenForwardOnly) return Kept(connection_->Run(source->prepared, values), source->fields);
  connection_->Start(source->prepared, values);
  return Stream(source->fields, std::make_unique<StartedRows>(connection_, source->fields));
}

void ServerDatabase::RequireWritable() const {
  if (readOnly_) Raise(EngineError::ReadOnly);
}

std::int32_t ServerDatabase::Change(std::string_view sql) {
  if (!announced_.empty() && announced_.front().source && announced_.front().sql == sql) return TakeAnswer().Affected();
  RequireNothingAnnounced();
  LetGoOfStreams();
  const std::shared_ptr<Template> source = Compile(sql);
  RequireExecutable(source->compiled);
  RequireWritable();
  std::int32_t affected = 0;
  const auto run = [&] {
    if (source->compiled.kind == jet::StatementKind::CreateTable) {
      MadeTable();
      CreateTable(*connection_, source->compiled.created);
    } else {
      affected = connection_->Run(source->prepared, Bound(source->compiled, nullptr)).Affected();
    }
  };
  // Outside of a transaction the statement takes its turn among the writers all the same.
  const bool apart = Level() == 0 || source->compiled.kind == jet::StatementKind::CreateTable;
  apart ? InOwnLevel(run) : run();
  return affected;
}

std::shared_ptr<ServerDatabase::Template> ServerDatabase::Compile(std::string_view sql) {
  if (auto known = cache_.Find(sql, lexed_.literals)) return known;
  jet::Lex(sql, lexed_);
  const Catalog& catalog = CurrentCatalog();
  auto compiled = std::make_shared<Template>(connection_);
  jet::CompileInto(*compiled, lexed_, catalog, PostgresDialect());
  compiled->prepared.sql = compiled->compiled.sql;
  for (const jet::ParameterSlot& slot : compiled->compiled.parameters)
    compiled->prepared.types.push_back(ServerTypeOf(slot.type));
  cache_.Add(compiled);
  return compiled;
}

// Other users create tables too.
const Catalog& ServerDatabase::CurrentCatalog() {
  const std::string version = connection_->Text("SELECT valor FROM tesovia.tsv_ajustes WHERE nome = 'catalogo'");
  if (catalogVersion_ != version) {
    cache_.Clear();
    catalog_ = LoadCatalog(*connection_);
    catalogVersion_ = version;
  }
  return catalog_;
}

void ServerDatabase::ForgetCatalog() {
  cache_.Clear();
  catalogVersion_.clear();
}

Values ServerDatabase::Bound(const jet::Compiled& compiled, const Parameters* parameters) const {
  Values values;
  values.Reserve(compiled.parameters.size());
  for (const jet::ParameterSlot& slot : compiled.parameters) AddValue(values, ValueOf(slot, parameters), slot.type);
  return values;
}

std::vector<std::string> ServerDatabase::ParametersOf(std::string_view sql) {
  LetGoOfStreams();
  return Compile(sql)->compiled.names;
}

void ServerDatabase::CloseEngine() {
  announced_.clear();
  cache_.Clear();
  connection_.reset();
}

void ServerDatabase::BeginOn(int level) {
  RequireNothingAnnounced();
  RequireWritable();
  if (level == 0) {
    connection_->Begin();
  } else {
    connection_->Execute("SAVEPOINT nivel");
  }
}

void ServerDatabase::CommitTo(int level) {
  RequireNothingAnnounced();
  if (level == 0) {
    connection_->Commit();
  } else {
    connection_->Execute("RELEASE nivel");
  }
}

void ServerDatabase::UndoTo(int level) {
  connection_->DropAnswers();
  announced_.clear();
  connection_->Undo(level == 0);
}

}  // namespace tsv::db::postgres
