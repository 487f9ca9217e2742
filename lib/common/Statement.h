#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/Errors.h"
#include "db/Database.h"
#include "types/Currency.h"
#include "types/Date.h"

namespace tsv::Module1 {

// A value in the form in which a statement takes it. Only the functions below make one, so that what a user typed
// never changes the shape of a statement.
class Literal {
 public:
  const std::string& Text() const noexcept { return text_; }
  bool IsNull() const noexcept { return text_ == "NULL"; }

 private:
  explicit Literal(std::string text) : text_(std::move(text)) {}

  friend Literal TextLiteral(std::string_view value);
  friend Literal TextOrNull(std::string_view value);
  friend Literal NumberLiteral(std::int32_t value);
  friend Literal NumberOrNull(std::int32_t value);
  friend Literal AmountLiteral(Currency value);
  friend Literal DateLiteral(Date value);
  friend Literal DateOnlyLiteral(Date value);
  std::string text_;
};

// Between apostrophes, as it is. A value that would end its own literal (an apostrophe that is not one of a doubled
// pair, or a NUL character) raises 3075, as the engine would.
Literal TextLiteral(std::string_view value);
Literal TextOrNull(std::string_view value);  // NULL when empty

Literal NumberLiteral(std::int32_t value);
Literal NumberOrNull(std::int32_t value);  // NULL when zero

Literal AmountLiteral(Currency value);  // two decimals, a point: -1234.50
Literal DateLiteral(Date value);        // with the time of day; the zero date is NULL
Literal DateOnlyLiteral(Date value);    // without it; the zero date is #12/30/1899#

// A piece of a statement that stands in the source.
struct Fragment {
  template <std::size_t N>
  consteval Fragment(const char (&fragment)[N]) : text(fragment, N - 1) {}  // NOLINT: meant to convert

  std::string_view text;
};

// The text of one statement, put together from fragments and literals.
class Statement {
 public:
  Statement() { text_.reserve(kUsualLength); }

  Statement& operator<<(Fragment fragment) {
    text_ += fragment.text;
    return *this;
  }
  Statement& operator<<(const Literal& literal) {
    text_ += literal.Text();
    return *this;
  }

  Statement& operator<<(const Statement& part) {
    text_ += part.text_;
    return *this;
  }

  const std::string& Text() const noexcept { return text_; }

  // Runs it on the session's database, failing on any error; how many rows it changed.
  std::int32_t Execute() const;

  // Runs a statement that must change a row; when it changes none, raises the error with the message for the user.
  void ExecuteOrRefuse(TS_ERROS numero, std::string_view refusal) const;

 private:
  static constexpr std::size_t kUsualLength = 1536;  // an entry's insert; spares the text growing step by step

  std::string text_;
};

// Tells the session's database that these will be executed next, and the query opened then (see Database::Announce).
void Anunciar(const std::vector<const Statement*>& next, const db::QueryCall& query);

}  // namespace tsv::Module1
