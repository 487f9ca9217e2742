#pragma once

#include <functional>
#include <string>
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

 private:
  std::string Operand(const Expression& e, std::size_t place) { return Write(*e.operands[place]); }
  std::string Place(ParameterSlot slot);
  std::string Logical(const Expression& e);
  std::string Arithmetic(const Expression& e);
  std::string Between(const Expression& e);
  std::string InList(const Expression& e);
  std::string Quantified(const Expression& e);
  std::string Case(const Expression& e);
  std::string Call(const Expression& e);
  std::string Scalar(const Expression& e);
  std::string Key(const Expression& value, bool exact);

  const Dialect& dialect_;
  QueryWriter writeQuery_;
  std::vector<ParameterSlot> parameters_;
};

}  // namespace tsv::db::jet
