#include "Collection.h"

#include "types/Erro.h"

namespace tsv {

void Collection::Remove(std::int32_t index) {
  items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(Place(index)));
}

std::size_t Collection::Place(std::int32_t index) const {
  if (index < 1 || index > Count()) Raise(RuntimeError::SubscriptOutOfRange);
  return static_cast<std::size_t>(index - 1);
}

}  // namespace tsv
