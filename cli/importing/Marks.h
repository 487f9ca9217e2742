#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "Entries.h"

namespace tsv::cli {

// What is known of one file's lines that were posted: a line that has its mark is never posted again. The identity
// and the line decide, not the content: two equal lines of one day are two entries.
class Marks {
 public:
  explicit Marks(std::string identity);

  // The marks of the lines from first to last, for Find.
  void Load(std::int32_t first, std::int32_t last);

  const std::string* Find(std::int32_t line) const;  // the digest of the line's content; nothing: not posted

  void Set(std::int32_t line, const std::string& digest, std::int32_t entryId);

 private:
  std::string identity_;
  std::map<std::int32_t, std::string> loaded_;
};

// 32 hexadecimal digits that differ for any two contents met in practice; no protection against forgery.
std::string DigestOf(const TypedEntry& entry);

}  // namespace tsv::cli
