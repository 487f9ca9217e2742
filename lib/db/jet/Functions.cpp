#include "db/jet/Functions.h"

#include <algorithm>

#include "db/jet/FunctionTables.h"
#include "db/jet/Keywords.h"

namespace tsv::db::jet {
namespace {

std::vector<Function> JoinTables() {
  std::vector<Function> all;
  for (const auto& table :
       {TextFunctions(), NumberFunctions(), ConversionFunctions(), DateFunctions(), FormatFunctions()}) {
    all.insert(all.end(), table.begin(), table.end());
  }
  return all;
}

}  // namespace

std::span<const Function> AllFunctions() {
  static const std::vector<Function> all = JoinTables();
  return all;
}

const Function* FindFunction(std::string_view name) {
  const auto all = AllFunctions();
  const auto found =
      std::find_if(all.begin(), all.end(), [name](const Function& function) { return SameWord(function.name, name); });
  return found == all.end() ? nullptr : &*found;
}

ValueType TypeOf(ArgumentKind kind, ValueType given) noexcept {
  switch (kind) {
    case ArgumentKind::Boolean:
      return ValueType::Boolean;
    case ArgumentKind::Long:
      return ValueType::Long;
    case ArgumentKind::Currency:
      return ValueType::Currency;
    case ArgumentKind::Double:
      return ValueType::Double;
    case ArgumentKind::Date:
      return ValueType::Date;
    case ArgumentKind::Text:
      return ValueType::Text;
    case ArgumentKind::Any:
      break;
  }
  return given;
}

}  // namespace tsv::db::jet
