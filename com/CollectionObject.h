#pragma once

#include <vector>

#include "Object.h"

namespace tsv::com {

// Values in the order in which they were added, counted from 1. Scripts walk over it with For Each.
class CollectionObject final : public Object<_Collection> {
 public:
  void Append(OleValue item) { items_.push_back(std::move(item)); }

  HRESULT STDMETHODCALLTYPE Item(VARIANT* index, VARIANT* item) noexcept override;
  HRESULT STDMETHODCALLTYPE Add(VARIANT* item) noexcept override;
  HRESULT STDMETHODCALLTYPE Count(long* count) noexcept override;
  HRESULT STDMETHODCALLTYPE Remove(VARIANT* index) noexcept override;
  HRESULT STDMETHODCALLTYPE _NewEnum(IUnknown** enumerator) noexcept override;

 private:
  std::size_t Place(const VARIANT& index) const;

  std::vector<OleValue> items_;
};

// Walks over the values as they are now.
IEnumVARIANT* NewEnumerator(std::vector<OleValue> items);

}  // namespace tsv::com
