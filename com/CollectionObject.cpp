#include "CollectionObject.h"

#include <algorithm>

#include "CountedObject.h"
#include "Values.h"
#include "types/Conversions.h"

namespace tsv::com {
namespace {

class Enumerator final : public CountedObject<IEnumVARIANT> {
 public:
  Enumerator(std::vector<OleValue> items, std::size_t next) : items_(std::move(items)), next_(next) {}

  HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* items, ULONG* fetched) noexcept override {
    ULONG given = 0;
    const HRESULT outcome = Guarded(IID_IEnumVARIANT, [&] {
      for (; given < count && next_ < items_.size(); ++given, ++next_) items[given] = OleValue(items_[next_]).Detach();
    });
    if (fetched) *fetched = given;
    if (FAILED(outcome)) return outcome;
    return given == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override {
    const std::size_t left = items_.size() - next_;
    next_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() noexcept override {
    next_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) noexcept override {
    if (!copy) return E_POINTER;
    *copy = nullptr;
    return Guarded(IID_IEnumVARIANT, [&] { *copy = new Enumerator(items_, next_); });
  }

 private:
  std::vector<OleValue> items_;
  std::size_t next_;
};

}  // namespace

IEnumVARIANT* NewEnumerator(std::vector<OleValue> items) { return new Enumerator(std::move(items), 0); }

std::size_t CollectionObject::Place(const VARIANT& index) const {
  const std::int32_t place = ToLong(ValueOf(index));
  if (place < 1 || static_cast<std::size_t>(place) > items_.size()) Raise(RuntimeError::SubscriptOutOfRange);
  return static_cast<std::size_t>(place - 1);
}

HRESULT STDMETHODCALLTYPE CollectionObject::Item(VARIANT* index, VARIANT* item) noexcept {
  if (!index || !item) return E_POINTER;
  return Do([&] { *item = OleValue(items_[Place(*index)]).Detach(); });
}

HRESULT STDMETHODCALLTYPE CollectionObject::Add(VARIANT* item) noexcept {
  if (!item) return E_POINTER;
  return Do([&] {
    OleValue kept;
    if (FAILED(VariantCopyInd(&kept.Raw(), item))) Raise(RuntimeError::TypeMismatch);
    Append(std::move(kept));
  });
}

HRESULT STDMETHODCALLTYPE CollectionObject::Count(long* count) noexcept {
  return Give(__uuidof(_Collection), count, static_cast<std::int32_t>(items_.size()));
}

HRESULT STDMETHODCALLTYPE CollectionObject::Remove(VARIANT* index) noexcept {
  if (!index) return E_POINTER;
  return Do([&] { items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(Place(*index))); });
}

HRESULT STDMETHODCALLTYPE CollectionObject::_NewEnum(IUnknown** enumerator) noexcept {
  if (!enumerator) return E_POINTER;
  *enumerator = nullptr;
  return Do([&] { *enumerator = NewEnumerator(items_); });
}

}  // namespace tsv::com
