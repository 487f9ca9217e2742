#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "db/Catalog.h"
#include "db/KeptRecordset.h"
#include "db/jet/Compiler.h"
#include "db/jet/Lexer.h"
#include "db/sqlite/Connection.h"

namespace tsv::db::sqlite {

// A statement's text with its literals left out, compiled once; and its prepared form while nobody uses it.
struct Template {
  std::string shape;
  jet::Compiled compiled;
  FieldDescriptions fields;  // of a SELECT
  std::optional<Statement> idle;
};

// A prepared statement in one user's hands: a second user of the same template gets another. It goes back to the
// template when it is released.
class StatementLease {
 public:
  StatementLease(Connection& connection, std::shared_ptr<Template> source);
  ~StatementLease();
  StatementLease(StatementLease&&) = default;
  StatementLease& operator=(StatementLease&&) = delete;

  Statement& operator*() { return *statement_; }
  Statement* operator->() { return &*statement_; }
  const jet::Compiled& Compiled() const { return source_->compiled; }
  const FieldDescriptions& Fields() const { return source_->fields; }

 private:
  std::shared_ptr<Template> source_;
  std::optional<Statement> statement_;
};

// The templates used last: a statement that comes again with other literals is neither parsed nor prepared again.
class StatementCache {
 public:
  static constexpr std::size_t kCapacity = 256;
  static constexpr std::size_t kLongestShape = 64 * 1024;  // a longer one is not worth its room

  // The template of the statement, and the statement's literals; nothing when it is new.
  std::shared_ptr<Template> Find(std::string_view sql, std::vector<Variant>& literals);

  std::shared_ptr<Template> Compile(const jet::Lexed& lexed, const Catalog& catalog);

  void Clear();
  std::size_t Size() const noexcept { return templates_.size(); }

 private:
  using Place = std::list<std::shared_ptr<Template>>::iterator;

  // The last used first. One shape has several templates when some of its literals shaped the compiled text.
  std::list<std::shared_ptr<Template>> templates_;
  std::unordered_multimap<std::string_view, Place> byHead_;
};

}  // namespace tsv::db::sqlite
