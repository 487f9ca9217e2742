#pragma once

#include <span>
#include <string>
#include <string_view>

#include "db/Catalog.h"

namespace tsv::db::jet {

struct Function;

// How one engine writes what the compiler has understood. Operands come as SQL texts that stand alone (parenthesised
// where needed); conditions are the engine's own truth values.
class Dialect {
 public:
  virtual ~Dialect() = default;

  virtual std::string Parameter(std::size_t place) const = 0;  // from 1
  virtual std::string Name(std::string_view name) const = 0;   // quoted
  virtual std::string NullOf(ValueType /*type*/) const { return "NULL"; }
  virtual std::string TableName(std::string_view name) const { return Name(name); }

  // A value of one type as another; Boolean becomes -1 or 0, a number becomes a condition by being other than zero.
  virtual std::string Convert(const std::string& value, ValueType from, ValueType to) const = 0;

  // Numbers of one type; op is one of + - * (Long, Currency, Decimal, Double) and / \ MOD ^ (Double).
  virtual std::string Arithmetic(std::string_view op, ValueType type, const std::string& a,
                                 const std::string& b) const = 0;

  // Two values of one type; op is one of = <> < > <= >=. exact: compared to the letter (see Column::exact).
  virtual std::string Compare(std::string_view op, ValueType type, bool exact, const std::string& a,
                              const std::string& b) const = 0;

  // A text as an operand of IN, DISTINCT, GROUP BY or UNION (equal without regard to case), or as a sort key.
  virtual std::string EqualityKey(const std::string& text) const = 0;
  virtual std::string SortKey(const std::string& text) const = 0;
  virtual std::string ExactKey(const std::string& text) const = 0;  // equal to the letter, sorted by code point

  // Whether these keys are values of their own, which must not be taken for the text itself: then rows are told apart
  // by SELECT DISTINCT ON of their keys, and both sides of IN become keys.
  virtual bool KeysReplaceTexts() const { return false; }

  // The order of a key; Null comes before everything else.
  virtual std::string Direction(bool descending) const { return descending ? " DESC" : ""; }

  // A column of a grouped query outside of aggregates: it is the same in all rows of the group but for what its
  // equality key leaves out.
  virtual std::string Grouped(const std::string& column) const { return column; }

  // A value on its way into a column of the type that an UPDATE names; no Boolean column holds Null.
  virtual std::string Stored(const std::string& value, ValueType /*type*/) const { return value; }

  virtual std::string Concat(const std::string& a,
                             const std::string& b) const = 0;  // Null counts as empty beside a text
  virtual std::string Like(const std::string& text, const std::string& pattern) const = 0;
  virtual std::string LikePrefix(const std::string& text,
                                 const std::string& prefix) const = 0;  // text LIKE prefix & '*'

  // Abs of a condition: 1 or 0, which running balances multiply by.
  virtual std::string Magnitude(const std::string& condition) const = 0;

  // A function of the table in Functions.h; types are those of the arguments as given.
  virtual std::string Call(const Function& function, std::span<const std::string> arguments,
                           std::span<const ValueType> types) const = 0;

  // Sum, Avg, Min, Max, First, Last, Count over a value of the type; Single is the one value of a subquery (two: 3354).
  virtual std::string Aggregate(std::string_view name, ValueType type, const std::string& value) const = 0;
};

}  // namespace tsv::db::jet
