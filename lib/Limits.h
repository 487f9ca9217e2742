#pragma once

#include <cstddef>
#include <string_view>

#include "common/Errors.h"
#include "types/Text.h"

// How long the texts of entries and requests may be, in characters, once trimmed.
namespace tsv::internal {

constexpr std::size_t kCodeLimit = 31;
constexpr std::size_t kDocumentLimit = 15;
constexpr std::size_t kHistoryLimit = 50;

// The text without surrounding blanks; beyond the limit it raises the error with the message for the user.
inline std::string_view TrimmedUpTo(std::size_t limit, std::string_view value, TS_ERROS numero,
                                    std::string_view refusal) {
  const std::string_view trimmed = text::Trim(value);
  if (text::Length(trimmed) > limit) Module1::GerarErro(numero, refusal);
  return trimmed;
}

}  // namespace tsv::internal
