#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "types/Currency.h"
#include "types/Date.h"

namespace tsv::bench {

// What one posting needs.
struct Posting {
  Date date;
  Currency amount;
  std::string account;
  std::string type;
  std::string centre;        // empty: none
  std::int32_t partner = 0;  // 0: none
};

// A company of the size that outgrows paper: 300 accounts and 400 types in four levels, 50 cost centres, 2,000
// partners, five years of entries on the lower levels. The accounts and types of the first level are parents of all the
// others; "1" was never posted on, "2" once, at the beginning.
class SampleLedger {
 public:
  // Makes a ledger file of so many entries with true balances, written in bulk.
  SampleLedger(std::string path, std::int32_t entries);

  const std::string& Path() const { return path_; }
  Date LastDay() const { return last_; }

  // An entry on the last day, on codes drawn from those in use; the same sequence for the same seed.
  Posting Ordinary(std::mt19937& random) const;

  // A day after which there are about so many entries.
  Date DayBeforeLast(std::int32_t entries) const;

 private:
  void WriteMasters();
  void WriteEntries();

  std::string path_;
  std::int32_t entries_;
  Date last_;
  std::vector<std::string> accounts_;
  std::vector<std::string> types_;
  std::vector<std::string> centres_;
  std::size_t firstUsedAccount_ = 0;
  std::size_t firstUsedType_ = 0;
};

constexpr std::int32_t kPartners = 2000;

}  // namespace tsv::bench
