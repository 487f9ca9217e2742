#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "types/Currency.h"
#include "types/Date.h"

// The library's values in the forms in which automation carries them, the same on every platform.
namespace tsv::automation {

using VariantBool = std::int16_t;  // True is -1
using Hresult = std::int32_t;

// CURRENCY is a 64-bit count of ten-thousandths, DATE a double of days: the library's own forms.
inline std::int64_t CurrencyToAutomation(Currency amount) noexcept { return amount.TenThousandths(); }
inline Currency CurrencyFromAutomation(std::int64_t units) noexcept { return Currency::FromTenThousandths(units); }
inline double DateToAutomation(Date date) noexcept { return date.Days(); }
Date DateFromAutomation(double days);  // outside the calendar, or no number: raises 5

inline VariantBool BoolToAutomation(bool truth) noexcept { return truth ? VariantBool{-1} : VariantBool{0}; }
inline bool BoolFromAutomation(VariantBool truth) noexcept { return truth != 0; }

// BSTR holds UTF-16. What is no text in the one form becomes U+FFFD (from UTF-16) or stays as single bytes' characters
// (from UTF-8), so that a damaged value is seen and nothing around it is lost.
std::u16string TextToAutomation(std::string_view utf8);
std::string TextFromAutomation(std::u16string_view utf16);

// The library's numbers are HRESULTs already; the runtime's and the engine's small ones travel as 0x800Annnn, which
// clients see as nnnn again.
Hresult HresultOf(std::int32_t number) noexcept;
std::int32_t NumberOf(Hresult result) noexcept;

}  // namespace tsv::automation
