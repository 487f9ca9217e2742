#include <string>
#include <vector>

#include "db/sqlite/SqlFunction.h"
#include "db/sqlite/StoredValue.h"
#include "types/Text.h"

namespace tsv::db::sqlite {
namespace {

// A decimal number stays exact inside functions too.
ValueType ArgumentType(jet::ArgumentKind kind, ValueType any) {
  return jet::TypeOf(kind, any == ValueType::Decimal ? ValueType::Currency : any);
}

void Call(const FunctionCall& call) {
  const jet::Function& function = *call.function;
  std::vector<Variant> arguments;
  arguments.reserve(call.arguments.size());
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    arguments.push_back(ReadStored(call.arguments[i], ArgumentType(function.arguments[i], call.any)));
  }
  const ValueType result = function.result != ValueType::Null ? function.result
                           : function.arguments.empty()       ? ValueType::Null
                                                              : ArgumentType(function.arguments[0], call.any);
  ReturnStored(call.context, function.call(arguments), result);
}

struct AnyForm {
  const char* suffix;
  ValueType type;
};
constexpr AnyForm kAnyForms[] = {
    {"_boolean", ValueType::Boolean},   {"_long", ValueType::Long},     {"_decimal", ValueType::Decimal},
    {"_currency", ValueType::Currency}, {"_double", ValueType::Double}, {"_date", ValueType::Date},
    {"_text", ValueType::Text},
};

bool TakesAny(const jet::Function& function) {
  for (const jet::ArgumentKind kind : function.arguments) {
    if (kind == jet::ArgumentKind::Any) return true;
  }
  return false;
}

}  // namespace

void RegisterJetFunctions(Connection& connection) {
  for (const jet::Function& function : jet::AllFunctions()) {
    const std::string name = "jet_" + text::Lower(function.name);
    const auto add = [&](const std::string& form, ValueType any) {
      for (std::size_t count = function.required; count <= function.arguments.size(); ++count) {
        AddFunction(connection, form.c_str(), static_cast<int>(count), Call,
                    {function.passesNull, function.constant, &function, any});
      }
    };
    if (!TakesAny(function)) {
      add(name, ValueType::Null);
      continue;
    }
    for (const AnyForm& form : kAnyForms) add(name + form.suffix, form.type);
  }
}

}  // namespace tsv::db::sqlite
