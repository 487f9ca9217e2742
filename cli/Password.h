#pragma once

#include <string>

namespace tsv::cli {

// The password of the environment variable or, without it, asked for at the terminal, unseen. A program without a
// terminal and without the variable is a usage failure.
std::string GivenPassword(const char* variable, const std::string& prompt);

// The same for a password that is being set: asked for twice.
std::string NewPassword(const char* variable, const std::string& prompt);

}  // namespace tsv::cli
