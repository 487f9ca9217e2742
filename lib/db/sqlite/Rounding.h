#pragma once

#include <cstdint>

#include "types/Currency.h"
#include "types/Erro.h"

// Amounts scaled back after a product or a sum, rounded to the nearest, halves to even. Not with wider integers, which
// 32-bit compilers do not have.
namespace tsv::db::sqlite {

// The product of two amounts in ten thousandths. One that is too large raises 6.
inline std::int64_t ScaledProduct(std::int64_t a, std::int64_t b) {
  constexpr std::int64_t kScale = Currency::kScale;
  // Of a = whole * scale + rest, and b likewise, all parts have the sign of the product: none is too large alone.
  const std::int64_t small = (a % kScale) * (b % kScale);
  const std::int64_t rest = small % kScale;
  std::int64_t whole = 0;
  std::int64_t cross = 0;
  std::int64_t product = small / kScale;
  const bool fits =
      !__builtin_mul_overflow(a / kScale, b, &whole) && !__builtin_mul_overflow(a % kScale, b / kScale, &cross) &&
      !__builtin_add_overflow(product, whole, &product) && !__builtin_add_overflow(product, cross, &product);
  const std::int64_t twice = 2 * (rest < 0 ? -rest : rest);
  const bool away = twice > kScale || (twice == kScale && product % 2 != 0);
  if (!fits || (away && __builtin_add_overflow(product, rest < 0 ? -1 : 1, &product))) Raise(RuntimeError::Overflow);
  return product;
}

// The average of so many amounts, up to 2^31, whose sum is high * 2^32 + low; low >= 0.
inline std::int64_t Average(std::int64_t high, std::int64_t low, std::int64_t count) {
  constexpr std::int64_t kHalf = std::int64_t{1} << 32;
  high += low / kHalf;
  std::int64_t quotient = high / count;
  std::int64_t rest = high % count;
  if (rest < 0) {
    rest += count;
    --quotient;
  }
  const std::int64_t dividend = rest * kHalf + low % kHalf;
  quotient = quotient * kHalf + dividend / count;
  rest = dividend % count;
  const bool up = rest > count - rest || (rest == count - rest && quotient % 2 != 0);
  return up ? quotient + 1 : quotient;
}

}  // namespace tsv::db::sqlite
