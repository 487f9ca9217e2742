#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/Statement.h"

// The tables of what entries refer to, and of the users. What is registered here later stands inside the ledger's
// statements, and codes are patterns of its running balances: what would change a statement or a pattern is refused.
namespace tsv::cli {

struct MasterTable {
  const char* command;  // as the user names it
  const char* title;    // "Conta", at the beginning of a message
  char gender;          // 'a' or 'o', the ending of "cadastrad_"
  Module1::Fragment table;
  Module1::Fragment key;  // the column by which the user names a row
  bool keyIsNumber;
  Module1::Fragment description;
  Module1::Fragment inactive;
};

extern const MasterTable kContas;
extern const MasterTable kTipos;
extern const MasterTable kCentros;
extern const MasterTable kParceiros;
extern const MasterTable kUsuarios;

// Values as they may be registered, trimmed; anything else is refused with a text that says why.
std::string CheckedCode(std::string_view code);
std::string CheckedName(std::string_view name, const char* what, std::size_t limit);
std::string CheckedLogin(std::string_view login);
std::string CheckedPassword(std::string_view password);

// On the session's database, inside a transaction of the caller's.
std::int32_t NextId(const MasterTable& table);
void ExpectUnused(const MasterTable& table, const std::string& key);
// Registered codes that contain this one, or lie in it, though no punctuation shows it: 1 and 10, LOJA and LOJA2.
std::vector<std::string> CodesThatLookApart(const MasterTable& table, const std::string& code);

// What an entry is classified by, as the user names it; empty: none.
struct Classification {
  std::string account;
  std::string type;
  std::string centre;
  std::string partner;
};

// A sentence about each of them that takes no postings.
std::vector<std::string> WhyUnusable(const Classification& classification);

void InsertUser(std::int32_t id, const std::string& login, const std::string& name, const std::string& password);

}  // namespace tsv::cli
