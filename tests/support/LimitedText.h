#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "support/Errors.h"

namespace tsv::test {

// A property that holds a text of limited length, as its name, and what a longer text raises.
template <typename Object>
struct LimitedText {
  void (Object::*let)(std::string_view);
  const std::string& (Object::*get)() const noexcept;
  std::size_t limit;
  const char* refusal;
  const char* origin;
};

// Each text is trimmed before its characters count, a refused one leaves the last, and no property is another's.
template <typename Object, std::size_t count>
void ExpectLimited(const LimitedText<Object> (&texts)[count], std::int32_t number) {
  for (const LimitedText<Object>& text : texts) {
    OnAnotherThread([&] {
      SCOPED_TRACE(text.origin);
      std::string longest;
      for (std::size_t i = 0; i < text.limit; ++i) longest += "Ç";
      Object object;
      (object.*text.let)("  " + longest + "   ");
      EXPECT_EQ((object.*text.get)(), longest);
      ExpectErro(ErrorOf([&] { (object.*text.let)(" " + longest + "Ç"); }), number, text.refusal, text.origin);
      for (const LimitedText<Object>& other : texts) {
        EXPECT_EQ((object.*other.get)(), other.let == text.let ? longest : "") << other.origin;
      }
    });
  }
}

}  // namespace tsv::test
