#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "db/Catalog.h"

namespace tsv::db::jet {

struct SourceColumn {
  std::string name;     // as statements call it
  std::string written;  // as the engine's SQL calls it
  ValueType type = ValueType::Null;
  bool exact = false;
};

// A table or subquery of a FROM clause.
struct Source {
  std::string alias;
  std::vector<SourceColumn> columns;
};

struct Resolved {
  const Source* source = nullptr;
  const SourceColumn* column = nullptr;  // nothing: the name is no column, so it is a parameter
  bool outer = false;                    // belongs to a query around this one
};

// The names that a query's expressions can use, then those of the queries around it.
class Scope {
 public:
  explicit Scope(const Scope* outer) : outer_(outer) {}

  void Add(Source source);  // an alias in use: 3131
  const std::vector<Source>& Sources() const { return sources_; }
  const Source* Find(std::string_view alias) const;

  // An unqualified name that two sources have: 3079.
  Resolved Resolve(std::string_view qualifier, std::string_view name) const;

 private:
  const Scope* outer_;
  std::vector<Source> sources_;
};

}  // namespace tsv::db::jet
