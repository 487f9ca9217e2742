#pragma once

#include <string>
#include <string_view>

namespace tsv::db {

// What a file keeps of its password: the SHA-256 sum of salt and password, in hexadecimal digits.
std::string PasswordSum(std::string_view salt, std::string_view password);

}  // namespace tsv::db
