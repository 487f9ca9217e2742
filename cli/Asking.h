#pragma once

#include <string>

// Questions to whoever sits at the terminal that standard input is tied to. A program that runs without one is told at
// once what it should have given.
namespace tsv::cli {

// Asks for a line; a usage failure that names the option to give instead when there is no terminal or the line is
// blank.
std::string AskFor(const std::string& prompt, const std::string& option);

// The value, or the answer when none was given.
std::string GivenOrAsked(const std::string& value, const std::string& prompt, const std::string& option);

// Whether the user says yes. Without a terminal there is nobody to ask, and the command goes on.
bool Confirm(const std::string& question);

}  // namespace tsv::cli
