#pragma once

#include <string>
#include <string_view>

#include "db/EngineError.h"
#include "db/jet/Lexer.h"

namespace tsv::db::jet {

// A place in the tokens of a statement, with the questions that a recursive descent asks.
class TokenReader {
 public:
  explicit TokenReader(const Lexed& lexed) : lexed_(lexed) {}

  const Token& Peek(std::size_t ahead = 0) const;
  const Token& Next();  // stays on End

  bool AtEnd() const { return Peek().kind == TokenKind::End; }
  bool IsWord(std::string_view word, std::size_t ahead = 0) const;
  bool IsOperator(std::string_view op, std::size_t ahead = 0) const;
  bool TakeWord(std::string_view word);
  bool TakeOperator(std::string_view op);
  void ExpectWord(std::string_view word, EngineError otherwise);
  void ExpectOperator(std::string_view op, EngineError otherwise);

  bool IsName() const;  // bracketed, or a word that is not reserved
  std::string ExpectName(EngineError otherwise);
  std::uint32_t ExpectLiteral(EngineError otherwise);
  std::int32_t ExpectWholeNumber(EngineError otherwise);

  const Variant& LiteralAt(std::uint32_t place) const { return lexed_.literals[place]; }

 private:
  const Lexed& lexed_;
  std::size_t at_ = 0;
};

}  // namespace tsv::db::jet
