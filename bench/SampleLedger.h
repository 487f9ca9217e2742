#pragma once

#include <cstdint>
#include <functional>
#include <memory>
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

// An entry as it is stored; amounts in ten-thousandths.
struct StoredEntry {
  std::int32_t id = 0;
  std::string account;
  std::string type;
  std::string centre;        // empty: none
  std::int32_t partner = 0;  // 0: none
  std::int64_t amount = 0;
  std::string moment;
  std::string key;
  std::int64_t accountBalance = 0;
  std::int64_t typeBalance = 0;
  std::int64_t centreBalance = 0;
  std::int64_t partnerBalance = 0;
  std::int64_t globalBalance = 0;
};

// Where entries are written in bulk, and the serial set to the last one's.
class EntryWriter {
 public:
  virtual ~EntryWriter() = default;
  virtual void Write(const StoredEntry& entry) = 0;
  virtual void Finish(std::int32_t serial) = 0;
};
std::unique_ptr<EntryWriter> WriterToFile(const std::string& path);
std::unique_ptr<EntryWriter> WriterToServer(const std::string& address);

// A company of the size that outgrows paper: 300 accounts and 400 types in four levels, 50 cost centres, 2,000
// partners, five years of entries on the lower levels. The accounts and types of the first level are parents of all the
// others; "1" was never posted on, "2" once, at the beginning.
class SampleLedger {
 public:
  // Makes a ledger of so many entries with true balances, written in bulk: a file, or one on a server.
  SampleLedger(std::string path, std::int32_t entries);

  const std::string& Path() const { return path_; }
  Date LastDay() const { return last_; }

  // An entry on the last day, on codes drawn from those in use; the same sequence for the same seed.
  Posting Ordinary(std::mt19937& random) const;

  // A day after which there are about so many entries.
  Date DayBeforeLast(std::int32_t entries) const;

 private:
  void WriteMasters();
  void EachEntry(const std::function<void(const StoredEntry&)>& write) const;

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
