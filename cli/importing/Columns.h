#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Entries.h"

namespace tsv::cli {

// Which field of a line is which value of an entry, as the file's header says.
class Columns {
 public:
  // Titles count without case, accents and punctuation. An unknown, missing or repeated one is a Failure: a mistyped
  // title would lose its values silently.
  explicit Columns(const std::vector<std::string>& header);

  std::size_t Count() const { return targets_.size(); }

  TypedEntry EntryOf(const std::vector<std::string>& fields) const;

 private:
  std::vector<std::string TypedEntry::*> targets_;
};

}  // namespace tsv::cli
