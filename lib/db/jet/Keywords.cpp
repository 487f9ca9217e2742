#include "db/jet/Keywords.h"

#include <algorithm>
#include <array>

namespace tsv::db::jet {
namespace {

constexpr char Upper(char c) noexcept { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

template <std::size_t N>
bool Holds(const std::array<std::string_view, N>& words, std::string_view word) noexcept {
  return std::any_of(words.begin(), words.end(), [&](std::string_view w) { return SameWord(w, word); });
}

}  // namespace

bool SameWord(std::string_view a, std::string_view b) noexcept {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return Upper(x) == Upper(y); });
}

bool IsReserved(std::string_view word) noexcept {
  static constexpr std::array<std::string_view, 52> kWords{
      "ALL",    "AND",        "ANY",      "AS",          "ASC",    "BETWEEN", "BY",     "CREATE", "CROSS",
      "DELETE", "DESC",       "DISTINCT", "DISTINCTROW", "DROP",   "EQV",     "EXISTS", "FALSE",  "FROM",
      "FULL",   "GROUP",      "HAVING",   "IMP",         "IN",     "INNER",   "INSERT", "INTO",   "IS",
      "JOIN",   "LEFT",       "LIKE",     "MOD",         "NOT",    "NULL",    "ON",     "OR",     "ORDER",
      "OUTER",  "PARAMETERS", "PIVOT",    "RIGHT",       "SELECT", "SET",     "SOME",   "TOP",    "TRANSFORM",
      "TRUE",   "UNION",      "UPDATE",   "VALUES",      "WHERE",  "WITH",    "XOR"};
  return Holds(kWords, word);
}

bool ExpectsOperand(std::string_view word) noexcept {
  static constexpr std::array<std::string_view, 18> kWords{"ALL",    "AND", "BETWEEN", "BY",   "DISTINCT", "EQV",
                                                           "HAVING", "IMP", "IN",      "LIKE", "MOD",      "NOT",
                                                           "ON",     "OR",  "SELECT",  "SET",  "WHERE",    "XOR"};
  return Holds(kWords, word);
}

}  // namespace tsv::db::jet
