#pragma once

#include "db/jet/Dialect.h"

namespace tsv::db::jet {

// What the dialects of SQL engines share: names in double quotes, and a conversion for each type to convert to.
class SqlDialect : public Dialect {
 public:
  std::string Name(std::string_view name) const override;
  std::string Convert(const std::string& value, ValueType from, ValueType to) const final;
  std::string Arithmetic(std::string_view op, ValueType type, const std::string& a, const std::string& b) const final;

 protected:
  static bool IsWhole(ValueType type) { return type == ValueType::Byte || type == ValueType::Long; }
  static bool IsAmount(ValueType type) { return type == ValueType::Decimal || type == ValueType::Currency; }
  static std::string Infix(const std::string& a, std::string_view op, const std::string& b);

  // A call of one of the functions that the engine was given, by the name that all engines know it by.
  virtual std::string Ours(std::string_view function, const std::string& arguments) const = 0;

  // What an engine has its own forms for; every other conversion is made of these and of the functions it was given.
  virtual std::string ConditionToWhole(const std::string& condition) const = 0;  // True is -1
  virtual std::string WholeToDouble(const std::string& value) const = 0;
  virtual std::string WholeToAmount(const std::string& value) const = 0;
  virtual std::string WholeToText(const std::string& value) const = 0;
  virtual std::string AmountToDouble(const std::string& value) const = 0;

 private:
  std::string ToBoolean(const std::string& value, ValueType from) const;
  std::string ToWhole(const std::string& value, ValueType from) const;
  std::string ToAmount(const std::string& value, ValueType from) const;
  std::string ToDouble(const std::string& value, ValueType from) const;
  std::string ToText(const std::string& value, ValueType from) const;
};

}  // namespace tsv::db::jet
