#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "db/Database.h"
#include "db/StoredQueries.h"
#include "db/StreamedRecordset.h"
#include "db/jet/Compiler.h"
#include "types/Erro.h"

namespace tsv::db::jet {

using Parameters = std::vector<QueryDef::Parameter>;

// What the databases have in common whose engines run compiled Jet SQL: observers, levels of transaction, open streams
// and definitions of queries.
class CompilingDatabase : public Database, public std::enable_shared_from_this<CompilingDatabase> {
 public:
  std::shared_ptr<Recordset> OpenRecordset(std::string_view sql, RecordsetTypeEnum type, std::int32_t options) final;
  void Execute(std::string_view sql, std::int32_t options) final;
  std::int32_t RecordsAffected() const final;
  void Announce(const std::vector<std::string_view>& next, const QueryCall* query) final;
  std::shared_ptr<QueryDef> QueryDefs(std::string_view name) final;
  std::shared_ptr<QueryDef> CreateQueryDef(std::string_view sql) final;
  void Close() final;
  void Observe(std::shared_ptr<StatementObserver> observer) final;

  // What the queries made here stand for.
  std::shared_ptr<Recordset> Open(const StoredQuery& query, const Parameters& parameters);
  std::shared_ptr<Recordset> Open(const std::string& sql, const Parameters& parameters);

 protected:
  int Level() const noexcept { return level_; }
  std::shared_ptr<Recordset> Stream(FieldDescriptions fields, std::unique_ptr<RowSource> source);
  void LetGoOfStreams();

  // Raises 3065 for a SELECT, 3061 for a parameter, which a statement to execute cannot have.
  static void RequireExecutable(const Compiled& compiled);
  // Raises 3219 for anything but a SELECT, 3061 for parameters that have no values.
  static void RequireSelect(const Compiled& compiled, const Parameters* parameters);
  // The values for the statement's parameters: literals of the last statement found or lexed, or those given.
  const Variant& ValueOf(const ParameterSlot& slot, const Parameters* parameters) const;

  // One more level around what changes the database outside of what its user begins.
  template <typename Action>
  void InOwnLevel(Action&& action);
  void MadeTable() noexcept { madeTables_ = true; }

  Lexed lexed_;

 private:
  bool IsOpen() const override = 0;
  void Begin() final;
  void Commit() final;
  void Rollback() final;

  virtual std::shared_ptr<Recordset> Select(std::string_view sql, RecordsetTypeEnum type,
                                            const Parameters* parameters) = 0;
  virtual std::shared_ptr<Recordset> Select(const StoredQuery& query, const Parameters& parameters) = 0;
  virtual std::int32_t Change(std::string_view sql) = 0;
  virtual void SendAhead(const std::vector<std::string_view>& /*next*/, const QueryCall* /*query, or none*/) {}
  virtual std::vector<std::string> ParametersOf(std::string_view sql) = 0;
  virtual void CloseEngine() = 0;

  // level: how many are open already, or how many stay open.
  virtual void BeginOn(int level) = 0;
  virtual void CommitTo(int level) = 0;
  virtual void UndoTo(int level) = 0;
  // Whether the engine gave up the open levels, or can go on only when the innermost is undone.
  virtual bool HasLostTransaction() const = 0;
  virtual void ForgetCatalog() = 0;

  void RequireOpen() const;
  template <typename Action>
  auto Observed(std::string_view text, Action&& action);
  template <typename Action>
  auto InTransaction(Action&& action);
  void BeginLevel();
  void CommitLevel();
  void UndoLevel();

  std::shared_ptr<StatementObserver> observer_;
  std::int32_t affected_ = 0;

  // How many levels of transaction are open, and why the engine gave them up, if it did: until they are rolled back
  // nothing runs, lest half of a transaction be kept.
  int level_ = 0;
  std::optional<Erro> lost_;
  bool madeTables_ = false;  // in the open levels

  std::vector<std::weak_ptr<StreamedRecordset>> streams_;
};

template <typename Action>
void CompilingDatabase::InOwnLevel(Action&& action) {
  BeginLevel();
  try {
    action();
    CommitLevel();
  } catch (...) {
    UndoLevel();
    throw;
  }
}

}  // namespace tsv::db::jet
