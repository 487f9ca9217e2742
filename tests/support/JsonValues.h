#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "types/Conversions.h"
#include "types/Erro.h"

namespace tsv::test {

using Json = nlohmann::json;

// A number with a point is a Double, one without a Long. Types that JSON lacks are named; dates are ISO, amounts
// in ten-thousandths.
inline Variant ValueOf(const Json& json) {
  if (json.is_null()) return Null{};
  if (json.is_boolean()) return json.get<bool>();
  if (json.is_string()) return json.get<std::string>();
  if (json.is_number_integer()) return json.get<std::int32_t>();
  if (json.is_number()) return json.get<double>();
  if (json.contains("date")) return Date::FromText(json["date"].get<std::string>()).value();
  if (json.contains("currency")) return Currency::FromTenThousandths(json["currency"]);
  if (json.contains("byte")) return json["byte"].get<std::uint8_t>();
  return Empty{};
}

// The value and its type, as text.
inline std::string Shown(const Variant& value) {
  static constexpr const char* kTypes[] = {"Empty",  "Null",     "Boolean", "Byte", "Long",
                                           "Double", "Currency", "Date",    "Text"};
  const std::string type = kTypes[value.index()];
  return IsEmpty(value) || IsNull(value) ? type : type + " " + ToText(value);
}

// What the action gives, shown, or "error" and its number.
template <typename Action>
std::string ShownResult(Action&& action) {
  try {
    return Shown(Variant(action()));
  } catch (const Erro& erro) {
    return "error " + std::to_string(erro.Numero());
  }
}

inline std::string ShownResult(const Json& listed) {
  if (listed.contains("error")) return "error " + std::to_string(listed["error"].get<int>());
  return Shown(ValueOf(listed));
}

}  // namespace tsv::test
