#pragma once

#include <optional>
#include <string_view>

#include "types/Date.h"

namespace tsv::db::jet {

// The text between two # signs: month first whatever the machine (an impossible month is swapped with the day), or
// yyyy-mm-dd, each with an optional time, or a time alone. Nothing when it is no date.
std::optional<Date> ReadDateLiteral(std::string_view text);

}  // namespace tsv::db::jet
