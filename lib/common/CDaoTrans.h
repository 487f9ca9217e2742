#pragma once

#include <cstdint>

namespace tsv {

// Counts the transactions that one operation begins on the thread's workspace; what is still open when it is released
// is rolled back, innermost first.
class CDaoTrans {
 public:
  CDaoTrans() = default;
  ~CDaoTrans();
  CDaoTrans(const CDaoTrans&) = delete;
  CDaoTrans& operator=(const CDaoTrans&) = delete;

  void BegTrans();
  void ComTrans();
  void RollBack() noexcept;  // one level; nothing when none is open. Its errors are ignored

 private:
  std::int32_t open_ = 0;
};

}  // namespace tsv
