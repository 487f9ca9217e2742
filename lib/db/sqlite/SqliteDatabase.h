#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "db/jet/CompilingDatabase.h"
#include "db/sqlite/Balances.h"
#include "db/sqlite/Connection.h"
#include "db/sqlite/StatementLease.h"
#include "db/sqlite/StoredValue.h"

namespace tsv::db::sqlite {

// A ledger in a file. Readers see the last commit before their statement and never wait; writers take turns.
class SqliteDatabase final : public jet::CompilingDatabase {
 public:
  explicit SqliteDatabase(std::unique_ptr<Connection> connection);
  ~SqliteDatabase() override;

  std::size_t CachedStatements() const noexcept { return cache_.Size(); }

 private:
  using Parameters = jet::Parameters;

  bool IsOpen() const override { return connection_ != nullptr; }
  std::shared_ptr<Recordset> Select(std::string_view sql, RecordsetTypeEnum type,
                                    const Parameters* parameters) override;
  std::shared_ptr<Recordset> Select(const StoredQuery& query, const Parameters& parameters) override;
  std::int32_t Change(std::string_view sql) override;
  std::vector<std::string> ParametersOf(std::string_view sql) override;
  void CloseEngine() override;
  void BeginOn(int level) override;
  void CommitTo(int level) override;
  void UndoTo(int level) override;
  bool HasLostTransaction() const override { return !connection_->InTransaction(); }
  void ForgetCatalog() override;

  std::shared_ptr<Template> Compile(std::string_view sql);
  const Catalog& CurrentCatalog();
  void Bind(Statement& statement, const jet::Compiled& compiled, const Parameters* parameters, Texts texts) const;

  // What every posting runs, prepared once.
  struct Transactions {
    explicit Transactions(Connection& connection);
    Statement begin;
    Statement beginReading;
    Statement commit;
    Statement save;
    Statement release;
  };
  class Snapshot;

  std::unique_ptr<Connection> connection_;
  std::optional<Transactions> transactions_;
  Catalog catalog_;
  std::optional<std::int64_t> catalogVersion_;
  jet::TemplateCache<Template> cache_;
  std::optional<Balances> balances_;
};

}  // namespace tsv::db::sqlite
