#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "db/Catalog.h"
#include "types/Variant.h"

// The value functions of Jet SQL (Len, Mid, DateAdd, Format, CLng ...), independent of the engine that calls them.
// What depends on the form of the statement (IIF, Nz, aggregates) belongs to the compiler.
namespace tsv::db::jet {

enum class ArgumentKind { Boolean, Long, Currency, Double, Date, Text, Any };

// The type of an argument of the kind, which for Any is that of what is given.
ValueType TypeOf(ArgumentKind kind, ValueType given) noexcept;

struct Function {
  std::string_view name;                // as documentation writes it: "DateAdd"
  std::vector<ArgumentKind> arguments;  // Any keeps the type of what is given
  std::size_t required = 0;             // how many of them must be given
  ValueType result = ValueType::Null;   // Null: the type of the first argument
  bool passesNull = true;               // any Null argument makes the result Null without a call
  bool constant = true;                 // the same arguments give the same result (not Now, Date, Time)

  // Omitted optional arguments are left out. Raises the runtime's errors (5, 6, 11, 13).
  Variant (*call)(std::span<const Variant> arguments) = nullptr;
};

std::span<const Function> AllFunctions();
const Function* FindFunction(std::string_view name);  // without regard to case; nothing when there is none

// LIKE through DAO: * any run, ? one character, # one digit, [list], [a-z], [!list]; case does not count, accents do,
// % and _ are ordinary. An unclosed bracket raises 93.
bool Like(std::string_view text, std::string_view pattern);

// text LIKE prefix & '*', the test that running balances rest on; a prefix without wildcards costs no pattern match.
bool LikePrefix(std::string_view text, std::string_view prefix);

}  // namespace tsv::db::jet
