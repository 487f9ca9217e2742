#include "types/AutomationValues.h"

#include <cmath>

#include "types/Erro.h"
#include "types/Text.h"

namespace tsv::automation {
namespace {

constexpr std::uint32_t kControlErrors = 0x800A0000;
constexpr std::uint32_t kFacility = 0xFFFF0000;
constexpr char32_t kReplacement = 0xFFFD;
constexpr double kFirstDay = -657434;       // 0100-01-01
constexpr double kBeyondLastDay = 2958466;  // 10000-01-01

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

}  // namespace

Date DateFromAutomation(double days) {
  // Within the first day the fraction still runs forward: -657434.5 is its noon.
  const bool isInCalendar = days > kFirstDay - 1 && days < kBeyondLastDay;
  if (!isInCalendar) Raise(RuntimeError::InvalidArgument);
  return Date(days);
}

std::u16string TextToAutomation(std::string_view utf8) {
  std::u16string utf16;
  for (std::size_t at = 0; at < utf8.size();) {
    const char32_t point = text::NextCodePoint(utf8, at);
    if (point < 0x10000) {
      utf16 += static_cast<char16_t>(point);
    } else {
      utf16 += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
      utf16 += static_cast<char16_t>(0xDC00 + (point & 0x3FF));
    }
  }
  return utf16;
}

std::string TextFromAutomation(std::u16string_view utf16) {
  std::string utf8;
  for (std::size_t at = 0; at < utf16.size(); ++at) {
    const char32_t unit = utf16[at];
    if (IsHighSurrogate(unit) && at + 1 < utf16.size() && IsLowSurrogate(utf16[at + 1])) {
      text::AppendCodePoint(utf8, 0x10000 + ((unit - 0xD800) << 10) + (utf16[++at] - char32_t{0xDC00}));
    } else {
      text::AppendCodePoint(utf8, IsHighSurrogate(unit) || IsLowSurrogate(unit) ? kReplacement : unit);
    }
  }
  return utf8;
}

Hresult HresultOf(std::int32_t number) noexcept {
  const auto bits = static_cast<std::uint32_t>(number);
  return static_cast<Hresult>((bits & kFacility) == 0 ? kControlErrors | bits : bits);
}

std::int32_t NumberOf(Hresult result) noexcept {
  const auto bits = static_cast<std::uint32_t>(result);
  return static_cast<std::int32_t>((bits & kFacility) == kControlErrors ? bits & ~kFacility : bits);
}

}  // namespace tsv::automation
