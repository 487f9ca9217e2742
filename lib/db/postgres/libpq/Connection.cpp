#include "db/postgres/libpq/Connection.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <thread>
#include <utility>

#include "db/Address.h"
#include "db/EngineError.h"
#include "db/postgres/libpq/ErrorMapping.h"

namespace tsv::db::postgres {
namespace {

constexpr int kBinary = 1;

constexpr std::string_view kNothingWritten = "A operação em curso não foi gravada. Tente de novo.";
constexpr std::string_view kUnknownOutcome =
    "Não se sabe se a operação em curso foi gravada: consulte o livro antes de repeti-la.";

// libpq quotes what it cannot read, which may be a part of the password.
void RequireReadable(const std::string& address) {
  constexpr std::string_view kAdvice =
      "o endereço não se lê. No usuário e na senha, escreva os sinais com seus códigos: @ é %40, / é %2F, : é %3A, "
      "? é %3F, % é %25";
  struct Freer {
    void operator()(PQconninfoOption* options) const noexcept { PQconninfoFree(options); }
  };
  const std::unique_ptr<PQconninfoOption, Freer> options(PQconninfoParse(address.c_str(), nullptr));
  if (!options || SplitsWrongly(address)) Raise(EngineError::ConnectionFailed, kAdvice);
  for (const PQconninfoOption* option = options.get(); option->keyword; ++option) {
    const std::string_view name = option->keyword;
    const std::string_view value = option->val ? option->val : "";
    const bool wrong = (name == "host" && value.find('@', 1) != std::string_view::npos) ||
                       (name == "port" && value.find_first_not_of("0123456789,") != std::string_view::npos);
    if (wrong) Raise(EngineError::ConnectionFailed, kAdvice);
  }
}

void RequireSendable(const Values& values) {
  if (values.Count() > PQ_QUERY_PARAM_MAX_LIMIT) Raise(EngineError::Unsupported, "consulta complexa demais");
}

std::string Option(const PGconn* connection, char* (*read)(const PGconn*)) {
  const char* text = read(connection);
  return text ? text : "";
}

}  // namespace

std::int32_t Result::Affected() const {
  const std::string_view text = PQcmdTuples(result_.get());
  std::int64_t rows = 0;
  std::from_chars(text.data(), text.data() + text.size(), rows);
  return static_cast<std::int32_t>(std::min<std::int64_t>(rows, std::numeric_limits<std::int32_t>::max()));
}

std::string_view Result::Bytes(int row, int column) const noexcept {
  return {PQgetvalue(result_.get(), row, column), static_cast<std::size_t>(PQgetlength(result_.get(), row, column))};
}

void Values::Reserve(std::size_t count) { texts_.reserve(count); }

std::vector<const char*> Values::Pointers() const {
  std::vector<const char*> pointers;
  pointers.reserve(texts_.size());
  for (const Value& value : texts_) pointers.push_back(value.null ? nullptr : value.text.c_str());
  return pointers;
}

Connection::Connection(std::string_view address, std::chrono::milliseconds patience)
    : address_(address), patience_(patience) {
  RequireReadable(address_);
  Open(Hurry::No);
}

void Connection::Open(Hurry hurry) {
  // A silent network must not leave the writer's place taken, nor a client waiting, for hours.
  // What the address says goes before what stands before it here, and after what stands behind it.
  const char* const waits = std::getenv("PGCONNECT_TIMEOUT") ? nullptr : "10";
  const char* const names[] = {"fallback_application_name",
                               "keepalives_idle",
                               "keepalives_interval",
                               "tcp_user_timeout",
                               "connect_timeout",
                               "dbname",
                               "client_encoding",
                               hurry == Hurry::Yes ? "connect_timeout" : nullptr,
                               nullptr};
  const char* const values[] = {"tesovia", "30", "10", "60000", waits, address_.c_str(), "UTF8", "2", nullptr};
  handle_.reset(PQconnectdbParams(names, values, 1));
  if (!handle_) Raise(RuntimeError::OutOfMemory);
  place_ = Option(handle_.get(), PQdb) + "@" + Option(handle_.get(), PQhost);
  if (PQstatus(handle_.get()) != CONNECTION_OK) throw ConnectionError(handle_.get());
  Greet();
}

// A pooler answers with a session number of its own.
void Connection::Greet() {
  ++generation_;
  forgotten_.clear();
  transaction_.clear();
  PQsetNoticeProcessor(
      handle_.get(), [](void*, const char*) {}, nullptr);
  const Result greeting = Execute(
      "SELECT pg_backend_pid()::text, coalesce(extract(epoch FROM stats_reset)::text, '') FROM pg_stat_bgwriter", {});
  pooled_ = greeting.Bytes(0, 0) != std::to_string(PQbackendPID(handle_.get()));
  life_ = greeting.Bytes(0, 1);
}

void Connection::Revive() {
  if (PQstatus(handle_.get()) != CONNECTION_OK) Open(Hurry::No);
}

// What was begun stays begun for its owner: nothing runs on a new connection before he has undone it.
void Connection::RaiseLost(std::string_view outcome) {
  throw Erro(static_cast<std::int32_t>(EngineError::ConnectionLost),
             TextOf(EngineError::ConnectionLost, place_).append(" ").append(outcome));
}

Result Connection::Checked(PGresult* raw, std::string_view sql) {
  Result result(raw);
  switch (PQresultStatus(raw)) {
    case PGRES_COMMAND_OK:
    case PGRES_TUPLES_OK:
    case PGRES_SINGLE_TUPLE:
      return result;
    default:
      break;
  }
  if (PQstatus(handle_.get()) != CONNECTION_OK || IsShutdown(raw)) RaiseLost(kNothingWritten);
  throw ErrorOf(raw, sql, place_);
}

Result Connection::Execute(const std::string& sql) {
  if (transaction_.empty()) Revive();
  return Checked(PQexec(handle_.get(), sql.c_str()), sql);
}

Result Connection::Execute(const std::string& sql, const std::vector<std::string>& texts) {
  if (transaction_.empty()) Revive();
  std::vector<const char*> pointers;
  for (const std::string& text : texts) pointers.push_back(text.c_str());
  return Checked(PQexecParams(handle_.get(), sql.c_str(), static_cast<int>(pointers.size()), nullptr, pointers.data(),
                              nullptr, nullptr, kBinary),
                 sql);
}

std::string Connection::Text(const std::string& sql, const std::vector<std::string>& texts) {
  const Result result = Execute(sql, texts);
  return result.Rows() == 0 || result.IsNull(0, 0) ? std::string() : std::string(result.Bytes(0, 0));
}

void Connection::Prepare(Prepared& statement) {
  if (!statement.name.empty() && statement.generation == generation_) return;
  FreeForgotten();
  const std::string name = "tsv" + std::to_string(++lastName_);
  Checked(PQprepare(handle_.get(), name.c_str(), statement.sql.c_str(), static_cast<int>(statement.types.size()),
                    statement.types.data()),
          statement.sql);
  statement.name = name;
  statement.generation = generation_;
}

Result Connection::Run(Prepared& statement, const Values& values) {
  RequireSendable(values);
  if (transaction_.empty()) Revive();
  const std::vector<const char*> pointers = values.Pointers();
  const int count = static_cast<int>(pointers.size());
  if (pooled_) {
    return Checked(PQexecParams(handle_.get(), statement.sql.c_str(), count, statement.types.data(), pointers.data(),
                                nullptr, nullptr, kBinary),
                   statement.sql);
  }
  Prepare(statement);
  return Checked(
      PQexecPrepared(handle_.get(), statement.name.c_str(), count, pointers.data(), nullptr, nullptr, kBinary),
      statement.sql);
}

void Connection::Forget(Prepared& statement) {
  if (!statement.name.empty() && statement.generation == generation_) forgotten_.push_back(std::move(statement.name));
  statement.name.clear();
}

void Connection::FreeForgotten() {
  for (const std::string& name : std::exchange(forgotten_, {})) Execute("DEALLOCATE " + name);
}

int Connection::Send(const Prepared& statement, const Values& values) {
  const std::vector<const char*> pointers = values.Pointers();
  const int count = static_cast<int>(pointers.size());
  return pooled_ ? PQsendQueryParams(handle_.get(), statement.sql.c_str(), count, statement.types.data(),
                                     pointers.data(), nullptr, nullptr, kBinary)
                 : PQsendQueryPrepared(handle_.get(), statement.name.c_str(), count, pointers.data(), nullptr, nullptr,
                                       kBinary);
}

void Connection::SendTogether(std::vector<std::pair<Prepared*, Values>> statements) {
  if (transaction_.empty()) Revive();
  for (const auto& [statement, values] : statements) {
    if (!pooled_) Prepare(*statement);
  }
  bool sent = PQenterPipelineMode(handle_.get()) != 0;
  for (const auto& [statement, values] : statements) {
    awaited_.push_back(statement);
    sent = sent && Send(*statement, values) != 0;
  }
  if (sent && PQpipelineSync(handle_.get()) != 0) return;
  DropAnswers();
  RaiseLost(kNothingWritten);
}

Result Connection::Answer() {
  try {
    PGresult* answer = PQgetResult(handle_.get());
    if (!answer) RaiseLost(kNothingWritten);
    Result result = Checked(answer, awaited_.front()->sql);
    PQclear(PQgetResult(handle_.get()));  // nothing: the end of this statement
    awaited_.pop_front();
    if (awaited_.empty()) DropAnswers();
    return result;
  } catch (...) {
    DropAnswers();
    throw;
  }
}

// Up to the mark that stands after the last one.
void Connection::DropAnswers() noexcept {
  if (PQpipelineStatus(handle_.get()) == PQ_PIPELINE_OFF) return awaited_.clear();
  for (std::size_t ends = 0; ends <= 2 * awaited_.size() + 1;) {
    PGresult* left = PQgetResult(handle_.get());
    const bool mark = PQresultStatus(left) == PGRES_PIPELINE_SYNC;
    if (!left) ++ends;
    PQclear(left);
    if (mark || PQstatus(handle_.get()) != CONNECTION_OK) break;
  }
  PQexitPipelineMode(handle_.get());
  awaited_.clear();
}

void Connection::Start(Prepared& statement, const Values& values) {
  RequireSendable(values);
  if (transaction_.empty()) Revive();
  if (!pooled_) Prepare(statement);
  if (Send(statement, values) == 0) RaiseLost(kNothingWritten);
  PQsetSingleRowMode(handle_.get());
  streaming_ = statement.sql;
}

Result Connection::Next() {
  PGresult* next = PQgetResult(handle_.get());
  if (!next) return Result(nullptr);
  try {
    Result result = Checked(next, streaming_);
    if (result.Rows() == 0) Abandon();
    return result;
  } catch (...) {
    Abandon();
    throw;
  }
}

void Connection::Abandon() noexcept {
  if (PGresult* left = PQgetResult(handle_.get())) {
    char ignored[256];
    // Inside a transaction a cancelled statement would take all that came before it along.
    if (PGcancel* cancel = transaction_.empty() ? PQgetCancel(handle_.get()) : nullptr) {
      PQcancel(cancel, ignored, sizeof ignored);
      PQfreeCancel(cancel);
    }
    for (; left; left = PQgetResult(handle_.get())) PQclear(left);
  }
}

void Connection::Begin() {
  Revive();
  const Result result = [&] {
    try {
      if (takeTurn_.sql.empty())
        takeTurn_.sql = "SELECT tesovia.tsv_tomar_a_vez(" + std::to_string(patience_.count()) + ")";
      SendTogether({{&begin_, {}}, {&takeTurn_, {}}});
      Answer();
      return Answer();
    } catch (...) {
      if (PQtransactionStatus(handle_.get()) != PQTRANS_IDLE) PQclear(PQexec(handle_.get(), "ROLLBACK"));
      throw;
    }
  }();
  transaction_ = result.Bytes(0, 0);
}

void Connection::BeginUnseen() { transaction_ = Execute("BEGIN; SELECT pg_current_xact_id()::text").Bytes(0, 0); }

// When the connection breaks before the answer comes, a new one may ask what became of the transaction.
void Connection::Commit() {
  // The server would roll back and call that a success.
  if (PQtransactionStatus(handle_.get()) == PQTRANS_INERROR)
    Raise(EngineError::InvalidOperation, "a transação falhou e só pode ser desfeita");
  const std::string life = life_;
  try {
    Execute("COMMIT");
    transaction_.clear();
    return;
  } catch (const Erro&) {
    if (PQstatus(handle_.get()) == CONNECTION_OK) throw;
  }
  const std::string transaction = std::exchange(transaction_, {});
  constexpr std::chrono::seconds kPatience(10);
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
    const std::string outcome = AskFor(transaction);
    const bool crashed = life_ != life;
    if (outcome.empty()) continue;
    if (outcome == "committed" && !crashed) return;
    // After a crash the server gives unwritten numbers away anew: a committed one may be another's.
    if (outcome == "committed" || outcome == "forgotten") break;
    if (outcome == "aborted" || crashed) RaiseLost(kNothingWritten);
  }
  RaiseLost(kUnknownOutcome);
}

// What the server tells of the transaction, on a new connection; empty: nothing. A replica may not have heard of it.
std::string Connection::AskFor(const std::string& transaction) {
  try {
    Open(Hurry::Yes);
    std::string outcome = Text(
        "SELECT CASE WHEN pg_is_in_recovery() THEN '' "
        "WHEN $1::xid8 >= pg_snapshot_xmax(pg_current_snapshot()) THEN 'in progress' "
        "ELSE coalesce(pg_xact_status($1::xid8), 'forgotten') END",
        {transaction});
    if (outcome.empty()) handle_.reset();
    return outcome;
  } catch (const Erro&) {
    return {};
  }
}

// A transaction that went with its connection is undone already.
void Connection::Undo(bool whole) {
  if (whole) transaction_.clear();
  if (PQstatus(handle_.get()) == CONNECTION_OK && InTransaction())
    Execute(whole ? "ROLLBACK" : "ROLLBACK TO nivel; RELEASE nivel");
}

bool Connection::InTransaction() const noexcept {
  const PGTransactionStatusType status = PQtransactionStatus(handle_.get());
  return status == PQTRANS_INTRANS || status == PQTRANS_INERROR || status == PQTRANS_ACTIVE;
}

bool Connection::HasFailed() const noexcept { return PQtransactionStatus(handle_.get()) != PQTRANS_INTRANS; }

}  // namespace tsv::db::postgres
