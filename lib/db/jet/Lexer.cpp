#include "db/jet/Lexer.h"

#include <algorithm>
#include <array>

#include "db/EngineError.h"
#include "db/jet/Characters.h"
#include "db/jet/Keywords.h"
#include "db/jet/LiteralReader.h"

namespace tsv::db::jet {
namespace {

// A shape has a mark for each literal: this character, which no statement's own text holds, the literal's kind, and
// what stands before it.
constexpr char kLiteralMark = '\x01';
constexpr std::size_t kMarkLength = 3;

char Written(Before before) {
  return static_cast<char>('0' + (before.operand ? 1 : 0) + (before.name ? 2 : 0) + (before.sign ? 4 : 0));
}
Before ReadBefore(char written) {
  const int bits = written - '0';
  return {.operand = (bits & 1) != 0, .name = (bits & 2) != 0, .sign = (bits & 4) != 0};
}

[[noreturn]] void RaiseForeignCharacter() {
  Raise(EngineError::SyntaxInExpression, "caractere que não pertence à linguagem");
}

class Scanner {
 public:
  Scanner(std::string_view sql, Lexed& lexed) : sql_(sql), lexed_(lexed) {}

  void Run() {
    for (SkipBlanks(); at_ < sql_.size(); SkipBlanks()) Next();
    Add(TokenKind::End, {});
    lexed_.shape += sql_.substr(written_);
  }

 private:
  void SkipBlanks() {
    while (at_ < sql_.size() && IsBlank(sql_[at_])) ++at_;
  }

  void Next() {
    const char c = sql_[at_];
    if (MayBeginLiteral(c) && Literal()) return;
    if (c == '[') return BracketedName();
    if (IsNameStart(c)) return Name();
    Operator();
  }

  void Add(TokenKind kind, std::string_view text, std::size_t literal = 0) {
    lexed_.tokens.push_back({kind, text, static_cast<std::uint32_t>(literal)});
  }

  // The literal's text is the part of the statement that its shape leaves out.
  bool Literal() {
    const std::size_t begin = at_;
    const Before before = BeforeHere();
    const LiteralKind kind = ReadLiteral(sql_, at_, before, lexed_.literals);
    if (kind == LiteralKind::None) return false;
    Add(TokenKind::Literal, {}, lexed_.literals.size() - 1);
    lexed_.shape.append(sql_, written_, begin - written_);
    lexed_.shape += {kLiteralMark, static_cast<char>(kind), Written(before)};
    written_ = at_;
    return true;
  }

  void BracketedName() {
    const std::size_t end = sql_.find(']', at_);
    if (end == std::string_view::npos || end == at_ + 1)
      Raise(EngineError::SyntaxInExpression, "nome entre colchetes incompleto");
    const std::string_view name = sql_.substr(at_ + 1, end - at_ - 1);
    if (name.find(kLiteralMark) != std::string_view::npos) RaiseForeignCharacter();
    Add(TokenKind::Bracketed, name);
    at_ = end + 1;
  }

  void Name() {
    const std::size_t begin = at_;
    while (at_ < sql_.size() && IsNamePart(sql_[at_])) ++at_;
    Add(TokenKind::Name, sql_.substr(begin, at_ - begin));
  }

  void Operator() {
    static constexpr std::array<std::string_view, 3> kPairs{"<>", "<=", ">="};
    static constexpr std::string_view kSingles = "+-*/\\^&=<>(),.;!";
    const std::string_view pair = sql_.substr(at_, 2);
    const std::size_t length = std::find(kPairs.begin(), kPairs.end(), pair) != kPairs.end() ? 2 : 1;
    if (length == 1 && kSingles.find(sql_[at_]) == std::string_view::npos) RaiseForeignCharacter();
    Add(TokenKind::Operator, sql_.substr(at_, length));
    at_ += length;
  }

  Before BeforeHere() const {
    const std::vector<Token>& tokens = lexed_.tokens;
    if (tokens.empty()) return {};
    const Token& last = tokens.back();
    const bool minus = last.kind == TokenKind::Operator && last.text == "-";
    return {.operand = IsOperand(last),
            .name = IsOperand(last) && (last.kind == TokenKind::Name || last.kind == TokenKind::Bracketed),
            .sign = minus && (tokens.size() == 1 || !IsOperand(tokens[tokens.size() - 2]))};
  }

  // Whether an operand may end with the token.
  static bool IsOperand(const Token& token) {
    if (token.kind == TokenKind::Operator) return token.text == ")";
    return token.kind != TokenKind::Name || !ExpectsOperand(token.text);
  }

  std::string_view sql_;
  Lexed& lexed_;
  std::size_t at_ = 0;
  std::size_t written_ = 0;  // what stands before is in the shape
};

}  // namespace

void Lex(std::string_view sql, Lexed& lexed) {
  lexed.tokens.clear();
  lexed.literals.clear();
  lexed.shape.clear();
  Scanner(sql, lexed).Run();
}

bool HasShape(std::string_view sql, std::string_view shape, std::vector<Variant>& literals) {
  literals.clear();
  std::size_t at = 0;
  for (;;) {
    const std::size_t mark = shape.find(kLiteralMark);
    const std::string_view known = shape.substr(0, mark);
    if (sql.substr(at, known.size()) != known) return false;
    at += known.size();
    if (mark == std::string_view::npos || at == sql.size()) return mark == std::string_view::npos && at == sql.size();
    const char kind = shape[mark + 1];
    const Before before = ReadBefore(shape[mark + 2]);
    if (static_cast<char>(ReadLiteral(sql, at, before, literals)) != kind) return false;
    shape.remove_prefix(mark + kMarkLength);
  }
}

std::string_view HeadOf(std::string_view sqlOrShape) noexcept {
  const auto end = std::find_if(sqlOrShape.begin(), sqlOrShape.end(),
                                [](char c) { return c == kLiteralMark || MayBeginLiteral(c); });
  return {sqlOrShape.begin(), end};
}

}  // namespace tsv::db::jet
