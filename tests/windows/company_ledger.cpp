// company_ledger PATH: makes a ledger file with the company of the tests. A path that ends in .mdb becomes what looks
// like a file of the legacy engine, with the ledger beside it.
#include <filesystem>
#include <fstream>
#include <string>

#include "support/Company.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::string path = argv[1];
  const bool isLegacy = path.ends_with(".mdb");
  const tsv::test::Company company;
  std::filesystem::copy_file(company.Path(), isLegacy ? path + ".tsv" : path);
  constexpr std::string_view kHeader("\0\1\0\0Standard Jet DB\0", 20);
  if (isLegacy) std::ofstream(path, std::ios::binary) << kHeader;
  return 0;
}
