#pragma once

#include <functional>
#include <memory>

#include "db/jet/TokenReader.h"
#include "db/jet/Tree.h"

namespace tsv::db::jet {

// Expressions by descending binding strength: ^, unary minus, * /, \, MOD, + -, &, comparisons and LIKE, NOT, AND, OR,
// XOR, EQV, IMP.
class ExpressionParser {
 public:
  using SubqueryParser = std::function<std::unique_ptr<Query>()>;

  // subquery reads a SELECT whose first word is the next token.
  ExpressionParser(TokenReader& reader, SubqueryParser subquery) : reader_(reader), subquery_(std::move(subquery)) {}

  ExpressionPtr Parse() { return Logical(0); }

  // Counts one level of nesting while it lives, so that no text can exhaust the stack.
  class Nesting {
   public:
    explicit Nesting(ExpressionParser& parser);
    ~Nesting() { --parser_.depth_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

   private:
    ExpressionParser& parser_;
  };

 private:
  ExpressionPtr Logical(std::size_t level);
  ExpressionPtr Not();
  ExpressionPtr Comparison();
  ExpressionPtr Predicate(ExpressionPtr left, bool negated);
  ExpressionPtr In(ExpressionPtr value);
  ExpressionPtr ComparedWith(std::string_view op, ExpressionPtr left);
  ExpressionPtr Concat();
  ExpressionPtr Arithmetic(std::size_t level);
  ExpressionPtr Unary();
  ExpressionPtr Power();
  ExpressionPtr Primary();
  ExpressionPtr Parenthesised();
  ExpressionPtr NameOrCall();
  ExpressionPtr Call(std::string name);
  std::unique_ptr<Query> Subquery();

  TokenReader& reader_;
  SubqueryParser subquery_;
  std::size_t depth_ = 0;
};

}  // namespace tsv::db::jet
