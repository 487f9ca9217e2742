#pragma once

#include <cstdint>
#include <cstdlib>

namespace tsv::test {

// How large a run shall be, if the environment tells.
inline std::uint64_t NumberFrom(const char* variable, std::uint64_t otherwise) {
  const char* given = std::getenv(variable);
  return given ? std::strtoull(given, nullptr, 10) : otherwise;
}

}  // namespace tsv::test
