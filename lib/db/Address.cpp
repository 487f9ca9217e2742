#include "db/Address.h"

#include <algorithm>
#include <charconv>

namespace tsv::db {
namespace {

constexpr std::string_view kAfterScheme = ":/";  // one slash may have been forgotten
constexpr std::string_view kHidden = "***";

std::string Decoded(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    int code = 0;
    const std::string_view digits = text.substr(i + 1, 2);
    const bool isCode = text[i] == '%' && digits.size() == 2 &&
                        std::from_chars(digits.data(), digits.data() + 2, code, 16).ptr == digits.data() + 2;
    decoded += isCode ? static_cast<char>(code) : text[i];
    if (isCode) i += 2;
  }
  return decoded;
}

// The last @ ends the password, whether or not those before it should have been written otherwise. Without one, what
// stands in a port's place but is no port may be a password whose host was forgotten.
void HideInUserPart(std::string& address) {
  const std::size_t scheme = address.find(kAfterScheme);
  if (scheme == std::string::npos) return;
  const std::size_t colon = address.find(':', scheme + kAfterScheme.size());
  if (colon == std::string::npos) return;
  std::size_t end = address.rfind('@');
  if (end == std::string::npos || end < colon) {
    end = std::min(address.find_first_of("/?", colon), address.size());
    if (address.find_first_not_of("0123456789", colon + 1) >= end) return;
  }
  address.replace(colon + 1, end - colon - 1, kHidden);
}

void HideInOptions(std::string& address) {
  for (std::size_t begin = address.find_first_of("?& "); begin != std::string::npos;
       begin = address.find_first_of("?& ", begin + 1)) {
    const std::size_t equals = address.find('=', begin);
    if (equals == std::string::npos) return;
    const std::string name = Decoded(std::string_view(address).substr(begin + 1, equals - begin - 1));
    if (!name.ends_with("password")) continue;
    const std::size_t end = std::min(address.find('&', equals), address.size());
    address.replace(equals + 1, end - equals - 1, kHidden);
  }
}

}  // namespace

std::string WithoutPassword(std::string_view address) {
  std::string shown(address);
  HideInUserPart(shown);
  HideInOptions(shown);
  return shown;
}

bool SplitsWrongly(std::string_view address) {
  const std::size_t scheme = address.find("://");
  if (scheme == std::string_view::npos) return false;
  address.remove_prefix(scheme + 3);
  const std::string_view place = address.substr(0, address.find('?'));
  const std::size_t at = place.find('@');
  return at != std::string_view::npos && (place.find('/') < at || place.find('@', at + 1) != std::string_view::npos);
}

}  // namespace tsv::db
