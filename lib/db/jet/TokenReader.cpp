#include "db/jet/TokenReader.h"

#include <algorithm>

#include "db/jet/Keywords.h"

namespace tsv::db::jet {

const Token& TokenReader::Peek(std::size_t ahead) const {
  return lexed_.tokens[std::min(at_ + ahead, lexed_.tokens.size() - 1)];
}

const Token& TokenReader::Next() {
  const Token& token = Peek();
  if (token.kind != TokenKind::End) ++at_;
  return token;
}

bool TokenReader::IsWord(std::string_view word, std::size_t ahead) const {
  const Token& token = Peek(ahead);
  return token.kind == TokenKind::Name && SameWord(token.text, word);
}

bool TokenReader::IsOperator(std::string_view op, std::size_t ahead) const {
  const Token& token = Peek(ahead);
  return token.kind == TokenKind::Operator && token.text == op;
}

bool TokenReader::TakeWord(std::string_view word) {
  if (!IsWord(word)) return false;
  ++at_;
  return true;
}

bool TokenReader::TakeOperator(std::string_view op) {
  if (!IsOperator(op)) return false;
  ++at_;
  return true;
}

void TokenReader::ExpectWord(std::string_view word, EngineError otherwise) {
  if (!TakeWord(word)) Raise(otherwise, "falta " + std::string(word));
}

void TokenReader::ExpectOperator(std::string_view op, EngineError otherwise) {
  if (!TakeOperator(op)) Raise(otherwise, "falta '" + std::string(op) + "'");
}

bool TokenReader::IsName() const {
  const Token& token = Peek();
  return token.kind == TokenKind::Bracketed || (token.kind == TokenKind::Name && !IsReserved(token.text));
}

std::string TokenReader::ExpectName(EngineError otherwise) {
  if (!IsName()) Raise(otherwise, "falta um nome");
  return std::string(Next().text);
}

std::uint32_t TokenReader::ExpectLiteral(EngineError otherwise) {
  if (Peek().kind != TokenKind::Literal) Raise(otherwise, "falta um valor");
  return Next().literal;
}

std::int32_t TokenReader::ExpectWholeNumber(EngineError otherwise) {
  const auto* number = std::get_if<std::int32_t>(&LiteralAt(ExpectLiteral(otherwise)));
  if (!number || *number < 0) Raise(otherwise, "falta um número inteiro");
  return *number;
}

}  // namespace tsv::db::jet
