#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "SampleLedger.h"

namespace tsv::bench {

// The baseline: one program written by hand for the same file, which posts an entry with the same five statements and
// the same two queries, each prepared once, and does nothing besides.
class Floor {
 public:
  explicit Floor(const std::string& path);
  ~Floor();

  void Post(const Posting& posting);

 private:
  struct Prepared;
  std::unique_ptr<Prepared> prepared_;
};

}  // namespace tsv::bench
