#pragma once

#include <cstdint>
#include <limits>

#include "types/Erro.h"

namespace tsv::db::sqlite {

// Room for products and sums of amounts before they are scaled back.
__extension__ typedef __int128 WideInteger;

// Rounded to the nearest, halves to even; divisor > 0. A quotient beyond 64 bits raises 6.
inline std::int64_t DividedHalfToEven(WideInteger dividend, std::int64_t divisor) {
  WideInteger quotient = dividend / divisor;
  const WideInteger rest = dividend % divisor;
  const WideInteger twice = 2 * (rest < 0 ? -rest : rest);
  if (twice > divisor || (twice == divisor && quotient % 2 != 0)) quotient += dividend < 0 ? -1 : 1;
  if (quotient < std::numeric_limits<std::int64_t>::min() || quotient > std::numeric_limits<std::int64_t>::max()) {
    Raise(RuntimeError::Overflow);
  }
  return static_cast<std::int64_t>(quotient);
}

}  // namespace tsv::db::sqlite
