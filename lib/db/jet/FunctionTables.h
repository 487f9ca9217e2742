#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "db/jet/Functions.h"
#include "types/Conversions.h"
#include "types/Erro.h"

// The parts of the table of functions, one for each subject, and how their bodies read arguments: each comes as its
// ArgumentKind says, and is given unless the function allows its omission.
namespace tsv::db::jet {

using Arguments = std::span<const Variant>;

std::vector<Function> TextFunctions();
std::vector<Function> NumberFunctions();
std::vector<Function> ConversionFunctions();
std::vector<Function> DateFunctions();
std::vector<Function> FormatFunctions();

inline const std::string& TextAt(Arguments arguments, std::size_t place) {
  return std::get<std::string>(arguments[place]);
}

inline std::int32_t LongAt(Arguments arguments, std::size_t place, std::int32_t omitted = 0) {
  return place < arguments.size() ? ToLong(arguments[place]) : omitted;
}

inline void Require(bool valid) {
  if (!valid) Raise(RuntimeError::InvalidArgument);
}

}  // namespace tsv::db::jet
