#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "db/jet/CompilingDatabase.h"
#include "db/jet/TemplateCache.h"
#include "db/postgres/libpq/Connection.h"

namespace tsv::db::postgres {

// A ledger on a server. Readers see the last commit before their statement and never wait; writers take turns. A
// statement that fails inside a transaction leaves it fit for a rollback only.
class ServerDatabase final : public jet::CompilingDatabase {
 public:
  ServerDatabase(std::shared_ptr<Connection> connection, bool readOnly);
  ~ServerDatabase() override;

 private:
  using Parameters = jet::Parameters;
  struct Template;

  bool IsOpen() const override { return connection_ != nullptr; }
  std::shared_ptr<Recordset> Select(std::string_view sql, RecordsetTypeEnum type,
                                    const Parameters* parameters) override;
  std::shared_ptr<Recordset> Select(const StoredQuery& query, const Parameters& parameters) override;
  std::int32_t Change(std::string_view sql) override;
  void SendAhead(const std::vector<std::string_view>& next, const QueryCall* query) override;
  std::vector<std::string> ParametersOf(std::string_view sql) override;
  void CloseEngine() override;
  void BeginOn(int level) override;
  void CommitTo(int level) override;
  void UndoTo(int level) override;
  bool HasLostTransaction() const override { return connection_->HasFailed(); }
  void ForgetCatalog() override;

  std::shared_ptr<Template> Compile(std::string_view sql);
  const Catalog& CurrentCatalog();
  Values Bound(const jet::Compiled& compiled, const Parameters* parameters) const;
  Prepared& CallOf(const StoredQuery& query);
  void RequireWritable() const;
  // The answer to the announced statement or query that stands first.
  Result TakeAnswer();
  // Raises 51 while announced statements were not executed: the transaction holds what its caller did not ask for.
  void RequireNothingAnnounced() const;

  std::shared_ptr<Connection> connection_;
  bool readOnly_;
  Catalog catalog_;
  std::string catalogVersion_;
  jet::TemplateCache<Template> cache_;
  std::vector<std::pair<StoredQuery::Kind, Prepared>> storedQueries_;

  // What was announced and sent: statements, and at the end perhaps a query.
  struct Announced {
    std::string sql;
    std::shared_ptr<Template> source;  // nothing: the query of the kind, with the parameters
    StoredQuery::Kind kind = {};
    Parameters parameters;
  };
  std::deque<Announced> announced_;
};

}  // namespace tsv::db::postgres
