#pragma once

#include <libpq-fe.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "types/Erro.h"

namespace tsv::db::postgres {

// What a statement returned; values are in the server's binary form.
class Result {
 public:
  explicit Result(PGresult* result) noexcept : result_(result) {}

  PGresult* Handle() const noexcept { return result_.get(); }
  int Rows() const noexcept { return PQntuples(result_.get()); }
  std::int32_t Affected() const;
  bool IsNull(int row, int column) const noexcept { return PQgetisnull(result_.get(), row, column) != 0; }
  std::string_view Bytes(int row, int column) const noexcept;
  Oid Type(int column) const noexcept { return PQftype(result_.get(), column); }

 private:
  struct Clearer {
    void operator()(PGresult* result) const noexcept { PQclear(result); }
  };
  std::unique_ptr<PGresult, Clearer> result_;
};

// The values for a statement's parameters, as texts that the server reads the same in every locale.
class Values {
 public:
  void Reserve(std::size_t count);
  void AddNull() { texts_.push_back({std::string(), true}); }
  void Add(std::string text) { texts_.push_back({std::move(text), false}); }
  std::size_t Count() const noexcept { return texts_.size(); }
  std::vector<const char*> Pointers() const;

 private:
  struct Value {
    std::string text;
    bool null;
  };
  std::vector<Value> texts_;
};

// A statement's text and what the server made of it.
struct Prepared {
  std::string sql;
  std::vector<Oid> types;        // of the parameters
  std::string name;              // on the server; empty: not there
  std::uint64_t generation = 0;  // of the connection that knows the name
};

// One connection to a server. Used by one thread at a time. A connection that is lost raises 3146; it is made anew when
// it is next used outside of a transaction.
class Connection {
 public:
  // An address in any of libpq's forms; what it leaves out comes from the environment. Raises 3151 with the server's
  // reason. patience: how long a writer waits for another before 3260.
  Connection(std::string_view address, std::chrono::milliseconds patience);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Runs statements of our own making: several at once without parameters, or one with texts for its parameters.
  Result Execute(const std::string& sql);
  Result Execute(const std::string& sql, const std::vector<std::string>& texts);
  std::string Text(const std::string& sql, const std::vector<std::string>& texts = {});  // empty: no row, or Null

  Result Run(Prepared& statement, const Values& values);
  void Forget(Prepared& statement);  // frees it on the server when that is convenient

  // Sends statements together. Answer gives their results one by one, in their order; when one has failed, those after
  // it were not run and their answers are gone. While there are answers to come, nothing else may run.
  void SendTogether(std::vector<std::pair<Prepared*, Values>> statements);
  Result Answer();
  void DropAnswers() noexcept;

  // Runs it, too, but its rows are fetched one by one: until Next has returned none, nothing else may run.
  void Start(Prepared& statement, const Values& values);
  Result Next();  // of no rows at the end
  void Abandon() noexcept;

  // Takes the one writer's place.
  void Begin();
  void BeginUnseen();  // takes no place: for what no other writer can know of yet

  // Commits; what a lost connection did to a commit is found out if it can be.
  void Commit();
  void Undo(bool whole);  // the transaction, or what came since its innermost savepoint "nivel"

  bool InTransaction() const noexcept;
  bool HasFailed() const noexcept;                              // the transaction can only be undone
  const std::string& Place() const noexcept { return place_; }  // for messages: host and database

 private:
  struct Finisher {
    void operator()(PGconn* handle) const noexcept { PQfinish(handle); }
  };

  enum class Hurry { No, Yes };
  void Open(Hurry hurry);
  void Greet();
  void Revive();
  std::string AskFor(const std::string& transaction);
  void Prepare(Prepared& statement);
  int Send(const Prepared& statement, const Values& values);
  Result Checked(PGresult* result, std::string_view sql);
  [[noreturn]] void RaiseLost(std::string_view outcome);
  void FreeForgotten();

  std::unique_ptr<PGconn, Finisher> handle_;
  std::string address_;
  std::string place_;
  std::chrono::milliseconds patience_;
  // Behind a pooler that lends a session for one transaction only, nothing can be kept on the server.
  bool pooled_ = false;
  std::uint64_t generation_ = 0;
  std::uint64_t lastName_ = 0;
  std::vector<std::string> forgotten_;
  std::string transaction_;  // the server's number of the open one
  std::string life_;         // the server's present one: its counters begin anew after a crash
  std::string streaming_;    // the text of the statement whose rows are being fetched
  std::deque<const Prepared*> awaited_;
  Prepared begin_{"BEGIN ISOLATION LEVEL READ COMMITTED", {}, {}, 0};
  Prepared takeTurn_;
};

}  // namespace tsv::db::postgres
