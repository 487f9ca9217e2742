#pragma once

#include <string>
#include <vector>

// What the server must know of the language's order, found out by comparing.
namespace tsv::db::postgres {

// Letters and figures that differ from a plain one in a mark only: each with its base, and with a character behind all
// bases for its place among that base's variants.
struct Variants {
  std::string letters;
  std::string bases;
  std::string marks;
};

Variants FindVariants();

struct Run {
  char32_t first;
  char32_t last;
};

// Every character that folding leaves as it is, in the language's order.
std::vector<Run> LanguageOrder();

// The symbols beyond ASCII, which sort before the figures.
std::vector<Run> SymbolsBeyondAscii();

// The characters that folding makes two of.
std::string Ligatures();

// Members of a class in a regular expression: \U0000000a-\U0000000f.
std::string ClassOf(const std::vector<Run>& runs);

}  // namespace tsv::db::postgres
