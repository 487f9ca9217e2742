#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "db/Catalog.h"
#include "db/jet/Functions.h"

// The syntax tree of one statement. The parser fills what was written; the binder adds names and types in place and
// inserts conversions; the writer reads it.
namespace tsv::db::jet {

struct Query;
struct Expression;
using ExpressionPtr = std::unique_ptr<Expression>;

struct Expression {
  enum class Kind {
    Literal,  // literal
    Null,
    Boolean,     // flag
    Name,        // qualifier, name; after binding: the source's alias and the column's own name
    Parameter,   // name
    Negate,      // [operand]
    Not,         // [condition]
    Arithmetic,  // op, [a, b]
    Concat,      // [a, b]
    Compare,     // op, [a, b]
    Logical,     // op, [a, b]: AND OR XOR EQV IMP
    Like,        // [text, pattern]
    LikePrefix,  // [text, prefix]: text LIKE prefix & '*'
    Between,     // [value, low, high]
    InList,      // [value, items...]
    InQuery,     // [value], query
    Quantified,  // op, [value], query; flag: ALL instead of ANY
    IsNull,      // [value]
    Exists,      // query
    Scalar,      // query
    Call,        // name, [arguments]
    Case,        // [condition, value, condition, value, ..., otherwise]
    Coalesce,    // [value, otherwise]
    Magnitude,   // [condition]: Abs of a condition, 1 or 0
    Aggregate,   // name, [value]; Count(*) has no value
    Convert,     // [value] to type
  };

  explicit Expression(Kind k) : kind(k) {}

  Kind kind;
  std::string name;
  std::string qualifier;
  std::string op;
  bool flag = false;
  std::uint32_t height = 1;  // of the tree below, as the parser built it
  std::uint32_t literal = 0;
  std::vector<ExpressionPtr> operands;
  std::unique_ptr<Query> query;

  // Set by the binder.
  ValueType type = ValueType::Null;
  bool exact = false;                  // a text compared to the letter
  const Function* function = nullptr;  // of Call
};

struct From {
  enum class Kind { Table, Derived, Inner, Left, Right };
  Kind kind = Kind::Table;
  std::string name;   // Table
  std::string alias;  // Table and Derived
  std::unique_ptr<Query> query;
  std::unique_ptr<From> left;
  std::unique_ptr<From> right;
  ExpressionPtr on;
};

struct SelectItem {
  ExpressionPtr value;  // nothing for a star
  std::string starOf;   // of a star: the alias before it, if any
  std::string alias;    // after binding: the column's name in the result
};

struct OrderItem {
  ExpressionPtr value;
  bool descending = false;
  std::optional<std::size_t> place;  // set by the binder when the item names a column of the result (from 0)
};

struct Top {
  std::uint32_t literal = 0;
  bool percent = false;
};

struct SelectBlock {
  bool distinct = false;
  std::optional<Top> top;
  std::vector<SelectItem> items;
  std::vector<std::unique_ptr<From>> from;
  ExpressionPtr where;
  std::vector<ExpressionPtr> groupBy;
  ExpressionPtr having;
};

// One or more blocks joined by UNION, then the order of the whole.
struct Query {
  std::vector<SelectBlock> blocks;
  std::vector<bool> unionAll;  // between block i and i + 1
  std::vector<OrderItem> orderBy;
};

struct Assignment {
  ExpressionPtr target;  // a Name
  ExpressionPtr value;
};

struct DeclaredParameter {
  std::string name;
  ValueType type = ValueType::Null;
};

// TRANSFORM value SELECT ... PIVOT by IN (columns)
struct Crosstab {
  ExpressionPtr value;
  ExpressionPtr by;
  std::vector<std::uint32_t> columns;  // literals
};

struct Statement {
  enum class Kind { Select, Insert, Update, Delete, CreateTable };
  Kind kind = Kind::Select;
  std::vector<DeclaredParameter> parameters;
  std::unique_ptr<Query> query;         // Select; Insert from a query
  std::optional<Crosstab> crosstab;     // Select
  std::string table;                    // Insert, Delete
  std::vector<std::string> columns;     // Insert: the target list, if any
  std::vector<ExpressionPtr> values;    // Insert: VALUES
  std::vector<Assignment> assignments;  // Update
  std::unique_ptr<From> from;           // Update, Delete
  ExpressionPtr where;                  // Update, Delete
  Table created;                        // CreateTable
};

}  // namespace tsv::db::jet
