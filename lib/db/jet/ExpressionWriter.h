#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "db/jet/Compiler.h"
#include "db/jet/Tree.h"

namespace tsv::db::jet {

// Writes bound expressions, and gives each literal and parameter its place among those that the engine binds.
class ExpressionWriter {
 public:
  using QueryWriter = std::function<std::string(const Query&)>;

  ExpressionWriter(const Dialect& dialect, QueryWriter writeQuery)
      : dialect_(dialect), writeQuery_(std::move(writeQuery)) {}

  std::string Write(const Expression& expression);
  std::string EqualityKey(const Expression& expression);  // for DISTINCT, GROUP BY, UNION
  std::string SortKey(const Expression& expression);
  std::string SortKey(std::string written, const Expression& expression) const;  // as it was written elsewhere

  std::vector<ParameterSlot>& Parameters() { return parameters_; }

  // Whether what is written now stands outside the aggregates of a grouped query; returns what it was.
  bool Grouped(bool grouped) { return std::exchange(grouped_, grouped); }

 private:
  std::string Operand(const Expression& e, std::size_t place) { return Write(*e.operands[place]); }
  std::string Place(ParameterSlot slot);
  std::string Logical(const Expression& e);
  std::string Arithmetic(const Expression& e);
  std::string Between(const Expression& e);
  std::string InList(const Expression& e);
  std::string Quantified(const Expression& e);
  std::string InQuery(const Expression& e);
  std::string Case(const Expression& e);
  std::string Call(const Expression& e);
  std::string Scalar(const Expression& e);
  std::string Column(const Expression& e) const;
  std::string Aggregate(const Expression& e);
  std::string Key(const Expression& value, bool exact);

  const Dialect& dialect_;
  QueryWriter writeQuery_;
  std::vector<ParameterSlot> parameters_;
  bool grouped_ = false;
};

}  // namespace tsv::db::jet
