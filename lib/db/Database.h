#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "db/Recordset.h"

namespace tsv::db {

// Sees every statement of a database, for tests and traces: its exact text, the name of a stored query as it is
// opened, and "BeginTrans", "CommitTrans" and "Rollback". What an observer throws leaves through the statement's
// caller.
class StatementObserver {
 public:
  virtual ~StatementObserver() = default;
  virtual void AboutToRun(std::string_view /*text*/) {}
  virtual void HasRun(std::string_view /*text*/,
                      std::int32_t /*affected: rows changed, or rows known so far of a recordset*/) {}
};

// A statement whose parameters are set before it is opened: a stored query of the database, or a client's text.
class QueryDef {
 public:
  struct Parameter {
    std::string Name;
    Variant Value;  // Empty until set
  };

  virtual ~QueryDef() = default;
  virtual Parameter& Parameters(std::size_t index);      // from 0; out of range: 3265
  virtual Parameter& Parameters(std::string_view name);  // without regard to case; unknown: 3265

  // A parameter that was not set raises 3061.
  virtual std::shared_ptr<Recordset> OpenRecordset() = 0;

 protected:
  std::vector<Parameter> parameters_;
};

// A query of the database, with values for all its parameters in their order.
struct QueryCall {
  std::string_view name;
  std::vector<QueryDef::Parameter> parameters;
};

// An open database. Statements are Jet SQL. Every member raises 3420 once closed.
class Database {
 public:
  virtual ~Database() = default;

  // Opens one SELECT; anything else raises 3219. Every type but forward-only holds all its rows when it is returned.
  virtual std::shared_ptr<Recordset> OpenRecordset(std::string_view sql, RecordsetTypeEnum type = dbOpenDynaset,
                                                   std::int32_t options = 0) = 0;

  // Runs one INSERT, UPDATE, DELETE or CREATE TABLE; a SELECT raises 3065. The embedded and the server engine fail as
  // a whole or not at all, whatever the options.
  virtual void Execute(std::string_view sql, std::int32_t options = 0) = 0;
  virtual std::int32_t RecordsAffected() const = 0;  // by the last Execute

  // A hint inside a transaction: the caller will execute these very texts next, in this order, then open the query, and
  // roll back unless he comes to its end. An engine at the end of a network runs them in one go; for the others it
  // means nothing.
  virtual void Announce(const std::vector<std::string_view>& /*next*/, const QueryCall* /*query, or none*/) {}

  virtual std::shared_ptr<QueryDef> QueryDefs(std::string_view name) = 0;      // unknown: 3265
  virtual std::shared_ptr<QueryDef> CreateQueryDef(std::string_view sql) = 0;  // temporary, for a client's own SELECT

  virtual void Close() = 0;

  // Nothing for none. The workspace reports its transactions to the observers of its databases.
  virtual void Observe(std::shared_ptr<StatementObserver> observer) = 0;

 private:
  friend class Workspace;
  virtual bool IsOpen() const = 0;
  virtual void Begin() = 0;  // one more level: the first takes the one writer's place (waiting past the timeout: 3260)
  virtual void Commit() = 0;
  virtual void Rollback() = 0;
};

}  // namespace tsv::db
