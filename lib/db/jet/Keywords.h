#pragma once

#include <string_view>

namespace tsv::db::jet {

bool SameWord(std::string_view a, std::string_view b) noexcept;  // without regard to the case of ASCII letters

// A word of the language that cannot stand bare as an alias or a name.
bool IsReserved(std::string_view word) noexcept;

// A word after which an expression begins, so that a minus sign there belongs to a number.
bool ExpectsOperand(std::string_view word) noexcept;

}  // namespace tsv::db::jet
