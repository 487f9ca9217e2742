#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tsv::db {

// Paths reach us in UTF-8 on every platform; the file system's own type must be told so.
inline std::filesystem::path FilePath(std::string_view utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

}  // namespace tsv::db
