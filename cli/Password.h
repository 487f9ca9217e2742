#pragma once

#include <string>

namespace tsv::cli {

// The password of the environment variable or, without it, asked for at the terminal, unseen. A program without a
// terminal and without the variable is a usage failure.
std::string GivenPassword(const char* variable, const std::string& prompt);

// The same for a password that is being set: asked for twice.
std::string NewPassword(const char* variable, const std::string& prompt);

// Asks for a line at the terminal; without one, a usage failure that names the option to give instead.
std::string AskFor(const std::string& prompt, const std::string& option);

}  // namespace tsv::cli
