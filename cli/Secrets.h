#pragma once

#include <string>

// Addresses of servers may hold passwords, and any message may hold an address.
namespace tsv::cli {

// From now on the word, one that the command was given, is told without the passwords that it may hold.
void RememberWord(const std::string& word);

// The text as it may be told.
std::string Told(std::string text);

}  // namespace tsv::cli
