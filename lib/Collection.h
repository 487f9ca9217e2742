#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "CLancamento.h"

namespace tsv {

// Entries in the order in which they were added.
class Collection {
 public:
  using Entry = std::shared_ptr<CLancamento>;

  std::int32_t Count() const noexcept { return static_cast<std::int32_t>(items_.size()); }

  // Places count from 1; any other raises 9.
  const Entry& Item(std::int32_t index) const { return items_[Place(index)]; }
  void Add(Entry item) { items_.push_back(std::move(item)); }
  void Remove(std::int32_t index);

  auto begin() const noexcept { return items_.begin(); }
  auto end() const noexcept { return items_.end(); }

 private:
  std::size_t Place(std::int32_t index) const;

  std::vector<Entry> items_;
};

}  // namespace tsv
