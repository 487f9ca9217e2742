// company_ledger PATH: makes a ledger file with the company of the tests.
#include <filesystem>

#include "support/Company.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const tsv::test::Company company;
  std::filesystem::copy_file(company.Path(), argv[1]);
  return 0;
}
