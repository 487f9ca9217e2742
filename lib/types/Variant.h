#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "types/Currency.h"
#include "types/Date.h"

namespace tsv {

struct Empty {
  friend constexpr bool operator==(Empty, Empty) = default;
};
struct Null {
  friend constexpr bool operator==(Null, Null) = default;
};

// The automation value types that this domain meets. Text is UTF-8.
using Variant = std::variant<Empty, Null, bool, std::uint8_t, std::int32_t, double, Currency, Date, std::string>;

inline bool IsEmpty(const Variant& value) noexcept { return std::holds_alternative<Empty>(value); }
inline bool IsNull(const Variant& value) noexcept { return std::holds_alternative<Null>(value); }

}  // namespace tsv
