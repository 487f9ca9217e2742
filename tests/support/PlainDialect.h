#pragma once

#include "db/jet/Dialect.h"
#include "db/jet/Functions.h"

namespace tsv::test {

// Enough of a dialect to compile against without an engine.
class PlainDialect : public db::jet::Dialect {
 public:
  using Text = const std::string&;
  using Type = db::ValueType;
  std::string Parameter(std::size_t place) const override { return "?" + std::to_string(place); }
  std::string Name(std::string_view name) const override { return std::string(name); }
  std::string Convert(Text value, Type, Type) const override { return value; }
  std::string Arithmetic(std::string_view op, Type, Text a, Text b) const override {
    return "(" + a + std::string(op) + b + ")";
  }
  std::string Compare(std::string_view op, Type, bool, Text a, Text b) const override {
    return "(" + a + std::string(op) + b + ")";
  }
  std::string EqualityKey(Text value) const override { return value; }
  std::string SortKey(Text value) const override { return value; }
  std::string ExactKey(Text value) const override { return value; }
  std::string Concat(Text a, Text b) const override { return "(" + a + "||" + b + ")"; }
  std::string Like(Text value, Text pattern) const override { return "(" + value + " LIKE " + pattern + ")"; }
  std::string LikePrefix(Text value, Text prefix) const override { return "(" + value + " BEGINS " + prefix + ")"; }
  std::string Magnitude(Text condition) const override { return condition; }
  std::string Call(const db::jet::Function& function, std::span<const std::string>,
                   std::span<const Type>) const override {
    return std::string(function.name) + "()";
  }
  std::string Aggregate(std::string_view name, Type, Text value) const override {
    return std::string(name) + "(" + value + ")";
  }
};

}  // namespace tsv::test
