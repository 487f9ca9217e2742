#include "db/jet/ExpressionParser.h"

#include <algorithm>
#include <array>

#include "db/jet/Keywords.h"

namespace tsv::db::jet {
namespace {

using Kind = Expression::Kind;
constexpr EngineError kSyntax = EngineError::SyntaxInExpression;
constexpr std::size_t kDeepest = 120;
constexpr std::uint32_t kHighest = 900;  // a chain of operators is a tree as high as it is long

constexpr std::array<std::string_view, 5> kLogical{"IMP", "EQV", "XOR", "OR", "AND"};
constexpr std::array<std::string_view, 6> kComparisons{"=", "<>", "<", ">", "<=", ">="};
constexpr std::array<std::string_view, 7> kAggregates{"COUNT", "SUM", "AVG", "MIN", "MAX", "FIRST", "LAST"};

void Add(Expression& node, ExpressionPtr operand) {
  if (operand->height >= kHighest) Raise(kSyntax, "expressão comprida demais");
  node.height = std::max(node.height, operand->height + 1);
  node.operands.push_back(std::move(operand));
}

ExpressionPtr Node(Kind kind, ExpressionPtr a = nullptr, ExpressionPtr b = nullptr, std::string_view op = {}) {
  auto node = std::make_unique<Expression>(kind);
  node->op = op;
  if (a) Add(*node, std::move(a));
  if (b) Add(*node, std::move(b));
  return node;
}

ExpressionPtr NegatedIf(bool negated, ExpressionPtr condition) {
  return negated ? Node(Kind::Not, std::move(condition)) : std::move(condition);
}

}  // namespace

ExpressionParser::Nesting::Nesting(ExpressionParser& parser) : parser_(parser) {
  if (parser_.depth_ >= kDeepest) Raise(kSyntax, "expressão aninhada demais");
  ++parser_.depth_;
}

ExpressionPtr ExpressionParser::Logical(std::size_t level) {
  if (level == kLogical.size()) return Not();
  ExpressionPtr left = Logical(level + 1);
  while (reader_.TakeWord(kLogical[level]))
    left = Node(Kind::Logical, std::move(left), Logical(level + 1), kLogical[level]);
  return left;
}

ExpressionPtr ExpressionParser::Not() {
  if (!reader_.TakeWord("NOT")) return Comparison();
  const Nesting nesting(*this);
  return Node(Kind::Not, Not());
}

ExpressionPtr ExpressionParser::Comparison() {
  ExpressionPtr left = Concat();
  for (;;) {
    const Token& token = reader_.Peek();
    if (token.kind == TokenKind::Operator &&
        std::find(kComparisons.begin(), kComparisons.end(), token.text) != kComparisons.end()) {
      left = ComparedWith(reader_.Next().text, std::move(left));
    } else if (reader_.IsWord("IS")) {
      reader_.Next();
      const bool negated = reader_.TakeWord("NOT");
      reader_.ExpectWord("NULL", kSyntax);
      left = NegatedIf(negated, Node(Kind::IsNull, std::move(left)));
    } else if (reader_.IsWord("LIKE") || reader_.IsWord("IN") || reader_.IsWord("BETWEEN")) {
      left = Predicate(std::move(left), false);
    } else if (reader_.IsWord("NOT") &&
               (reader_.IsWord("LIKE", 1) || reader_.IsWord("IN", 1) || reader_.IsWord("BETWEEN", 1))) {
      reader_.Next();
      left = Predicate(std::move(left), true);
    } else {
      return left;
    }
  }
}

ExpressionPtr ExpressionParser::ComparedWith(std::string_view op, ExpressionPtr left) {
  for (const std::string_view word : {"ANY", "SOME", "ALL"}) {
    if (!reader_.IsWord(word) || !reader_.IsOperator("(", 1)) continue;
    reader_.Next();
    ExpressionPtr node = Node(Kind::Quantified, std::move(left), nullptr, op);
    node->flag = word == "ALL";
    node->query = Subquery();
    return node;
  }
  return Node(Kind::Compare, std::move(left), Concat(), op);
}

ExpressionPtr ExpressionParser::Predicate(ExpressionPtr left, bool negated) {
  if (reader_.TakeWord("LIKE")) return NegatedIf(negated, Node(Kind::Like, std::move(left), Concat()));
  if (reader_.TakeWord("IN")) return NegatedIf(negated, In(std::move(left)));
  reader_.ExpectWord("BETWEEN", kSyntax);
  ExpressionPtr between = Node(Kind::Between, std::move(left), Concat());
  reader_.ExpectWord("AND", kSyntax);
  Add(*between, Concat());
  return NegatedIf(negated, std::move(between));
}

ExpressionPtr ExpressionParser::In(ExpressionPtr value) {
  if (reader_.IsOperator("(") && reader_.IsWord("SELECT", 1)) {
    ExpressionPtr node = Node(Kind::InQuery, std::move(value));
    node->query = Subquery();
    return node;
  }
  ExpressionPtr node = Node(Kind::InList, std::move(value));
  reader_.ExpectOperator("(", kSyntax);
  do {
    Add(*node, Parse());
  } while (reader_.TakeOperator(","));
  reader_.ExpectOperator(")", kSyntax);
  return node;
}

ExpressionPtr ExpressionParser::Concat() {
  ExpressionPtr left = Arithmetic(0);
  while (reader_.TakeOperator("&")) left = Node(Kind::Concat, std::move(left), Arithmetic(0));
  return left;
}

ExpressionPtr ExpressionParser::Arithmetic(std::size_t level) {
  static constexpr std::array<std::array<std::string_view, 2>, 4> kLevels{
      {{"+", "-"}, {"MOD", "MOD"}, {"\\", "\\"}, {"*", "/"}}};
  if (level == kLevels.size()) return Unary();
  ExpressionPtr left = Arithmetic(level + 1);
  for (;;) {
    const auto& ops = kLevels[level];
    const auto taken = std::find_if(
        ops.begin(), ops.end(), [&](std::string_view op) { return reader_.TakeOperator(op) || reader_.TakeWord(op); });
    if (taken == ops.end()) return left;
    left = Node(Kind::Arithmetic, std::move(left), Arithmetic(level + 1), *taken);
  }
}

ExpressionPtr ExpressionParser::Unary() {
  if (reader_.TakeOperator("-")) {
    const Nesting nesting(*this);
    return Node(Kind::Negate, Unary());
  }
  if (reader_.TakeOperator("+")) {
    const Nesting nesting(*this);
    return Unary();
  }
  return Power();
}

ExpressionPtr ExpressionParser::Power() {
  ExpressionPtr left = Primary();
  while (reader_.TakeOperator("^")) {
    const bool negative = reader_.TakeOperator("-");
    ExpressionPtr right = Primary();
    if (negative) right = Node(Kind::Negate, std::move(right));
    left = Node(Kind::Arithmetic, std::move(left), std::move(right), "^");
  }
  return left;
}

ExpressionPtr ExpressionParser::Primary() {
  const Nesting nesting(*this);
  const Token& token = reader_.Peek();
  if (token.kind == TokenKind::Literal) {
    ExpressionPtr node = Node(Kind::Literal);
    node->literal = reader_.Next().literal;
    return node;
  }
  if (reader_.IsOperator("(")) return Parenthesised();
  if (reader_.TakeWord("NULL")) return Node(Kind::Null);
  if (reader_.IsWord("TRUE") || reader_.IsWord("FALSE")) {
    ExpressionPtr node = Node(Kind::Boolean);
    node->flag = SameWord(reader_.Next().text, "TRUE");
    return node;
  }
  if (reader_.TakeWord("EXISTS")) {
    ExpressionPtr node = Node(Kind::Exists);
    node->query = Subquery();
    return node;
  }
  if (reader_.IsWord("NOT")) return Not();
  // Words of joins and of orders are functions where an expression begins.
  const bool function =
      reader_.IsOperator("(", 1) && (reader_.IsWord("LEFT") || reader_.IsWord("RIGHT") || reader_.IsWord("ASC"));
  if (reader_.IsName() || function) return NameOrCall();
  Raise(kSyntax, "falta um operando");
}

ExpressionPtr ExpressionParser::Parenthesised() {
  if (reader_.IsWord("SELECT", 1)) {
    ExpressionPtr node = Node(Kind::Scalar);
    node->query = Subquery();
    return node;
  }
  reader_.ExpectOperator("(", kSyntax);
  ExpressionPtr inner = Parse();
  reader_.ExpectOperator(")", kSyntax);
  return inner;
}

std::unique_ptr<Query> ExpressionParser::Subquery() {
  const Nesting nesting(*this);
  reader_.ExpectOperator("(", kSyntax);
  if (!reader_.IsWord("SELECT")) Raise(kSyntax, "falta SELECT");
  auto query = subquery_();
  reader_.ExpectOperator(")", kSyntax);
  return query;
}

ExpressionPtr ExpressionParser::NameOrCall() {
  const bool bare = reader_.Peek().kind == TokenKind::Name;
  std::string first(reader_.Next().text);
  if (bare && reader_.IsOperator("(")) return Call(std::move(first));
  ExpressionPtr node = Node(Kind::Name);
  if (reader_.TakeOperator(".") || reader_.TakeOperator("!")) {
    node->qualifier = std::move(first);
    node->name = reader_.ExpectName(kSyntax);
  } else {
    node->name = std::move(first);
  }
  return node;
}

ExpressionPtr ExpressionParser::Call(std::string name) {
  if (name.back() == '$') name.pop_back();
  const bool aggregate =
      std::any_of(kAggregates.begin(), kAggregates.end(), [&](std::string_view a) { return SameWord(a, name); });
  ExpressionPtr node = Node(aggregate ? Kind::Aggregate : Kind::Call);
  node->name = std::move(name);
  reader_.ExpectOperator("(", kSyntax);
  if (reader_.TakeOperator(")")) return node;
  if (aggregate && reader_.IsOperator("*") && SameWord(node->name, "COUNT")) {
    reader_.Next();
  } else {
    if (aggregate && reader_.IsWord("DISTINCT"))
      Raise(EngineError::Unsupported, "DISTINCT dentro de uma função de agregação");
    do {
      Add(*node, Parse());
    } while (reader_.TakeOperator(","));
  }
  reader_.ExpectOperator(")", kSyntax);
  return node;
}

}  // namespace tsv::db::jet
