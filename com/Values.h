#pragma once

#include "CBaixa.h"
#include "Failure.h"
#include "types/AutomationValues.h"

// The library's values in the places where members of interfaces return them, and back.
namespace tsv::com {

using db::dao::NewBstr;
using db::dao::TextOf;
using db::dao::ValueOf;

inline std::int32_t From(long value) { return static_cast<std::int32_t>(value); }
inline std::uint8_t From(unsigned char value) { return value; }
inline bool From(VARIANT_BOOL value) { return automation::BoolFromAutomation(value); }
inline std::string From(BSTR value) { return TextOf(value); }
inline Currency From(const CURRENCY& value) { return automation::CurrencyFromAutomation(value.int64); }
inline Date From(DATE value) { return automation::DateFromAutomation(value); }
inline Variant From(const VARIANT& value) { return ValueOf(value); }
inline tsv::TIPO_BAIXA From(::TIPO_BAIXA value) { return static_cast<tsv::TIPO_BAIXA>(value); }

inline void Put(long* place, std::int32_t value) { *place = value; }
inline void Put(unsigned char* place, std::uint8_t value) { *place = value; }
inline void Put(VARIANT_BOOL* place, bool value) { *place = automation::BoolToAutomation(value); }
inline void Put(BSTR* place, const std::string& value) { *place = NewBstr(value); }
inline void Put(CURRENCY* place, Currency value) { place->int64 = automation::CurrencyToAutomation(value); }
inline void Put(DATE* place, Date value) { *place = automation::DateToAutomation(value); }
inline void Put(::TIPO_BAIXA* place, tsv::TIPO_BAIXA value) { *place = static_cast<::TIPO_BAIXA>(value); }
inline void Put(VARIANT* place, const Variant& value) { *place = OleValue(value).Detach(); }

// Leaves a value where the client wants it.
template <typename Place, typename Value>
HRESULT Give(REFIID id, Place* place, const Value& value) noexcept {
  if (!place) return E_POINTER;
  return Guarded(id, [&] { Put(place, value); });
}

}  // namespace tsv::com
