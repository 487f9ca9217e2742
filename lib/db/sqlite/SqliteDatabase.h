#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "db/Database.h"
#include "db/sqlite/Balances.h"
#include "db/sqlite/Connection.h"
#include "db/sqlite/StatementCache.h"
#include "db/sqlite/StoredValue.h"

namespace tsv::db::sqlite {

class StreamedRecordset;
struct StoredQuery;

// A ledger in a file. Readers see the last commit before their statement and never wait; writers take turns.
class SqliteDatabase final : public Database, public std::enable_shared_from_this<SqliteDatabase> {
 public:
  using Parameters = std::vector<QueryDef::Parameter>;

  explicit SqliteDatabase(std::unique_ptr<Connection> connection);
  ~SqliteDatabase() override;

  std::shared_ptr<Recordset> OpenRecordset(std::string_view sql, RecordsetTypeEnum type, std::int32_t options) override;
  void Execute(std::string_view sql, std::int32_t options) override;
  std::int32_t RecordsAffected() const override;
  std::shared_ptr<QueryDef> QueryDefs(std::string_view name) override;
  std::shared_ptr<QueryDef> CreateQueryDef(std::string_view sql) override;
  void Close() override;
  void Observe(std::shared_ptr<StatementObserver> observer) override;

  // What the queries made here stand for.
  std::shared_ptr<Recordset> Open(const StoredQuery* query, const Parameters& parameters);
  std::shared_ptr<Recordset> Open(const std::string& sql, const Parameters& parameters);

  std::size_t CachedStatements() const noexcept { return cache_.Size(); }

 private:
  bool IsOpen() const override { return connection_ != nullptr; }
  void Begin() override;
  void Commit() override;
  void Rollback() override;

  void RequireOpen() const;
  template <typename Action>
  auto Observed(std::string_view text, Action&& action);
  template <typename Action>
  auto InTransaction(Action&& action);

  void BeginLevel();
  void CommitLevel();
  void UndoLevel();
  void EndLevel();

  std::shared_ptr<Template> Compile(std::string_view sql);
  const Catalog& CurrentCatalog();
  void Bind(Statement& statement, const jet::Compiled& compiled, const Parameters* parameters, Texts texts) const;
  std::shared_ptr<Recordset> Select(std::string_view sql, RecordsetTypeEnum type, const Parameters* parameters);
  std::int32_t Change(std::string_view sql);
  void CreateTable(const Table& table);
  std::shared_ptr<Recordset> Stream(StatementLease statement);
  void LetGoOfStreams();

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
  std::shared_ptr<StatementObserver> observer_;
  std::int32_t affected_ = 0;

  // How many levels of transaction are open, and why SQLite gave them up, if it did: until all are rolled back
  // nothing runs, lest half of a transaction be kept.
  int level_ = 0;
  std::optional<Erro> lost_;

  bool madeTables_ = false;  // in the open levels

  Catalog catalog_;
  std::optional<std::int64_t> catalogVersion_;
  StatementCache cache_;
  jet::Lexed lexed_;
  std::optional<Balances> balances_;
  std::vector<std::weak_ptr<StreamedRecordset>> streams_;
};

}  // namespace tsv::db::sqlite
