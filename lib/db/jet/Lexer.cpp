#include "db/jet/Lexer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "db/EngineError.h"
#include "db/jet/DateLiteral.h"
#include "db/jet/Keywords.h"

namespace tsv::db::jet {
namespace {

enum Class : std::uint8_t { kOther = 0, kBlank = 1, kDigit = 2, kNameStart = 4, kNamePart = 8 };

constexpr std::array<std::uint8_t, 256> kClasses = [] {
  std::array<std::uint8_t, 256> classes{};
  for (const char c : {' ', '\t', '\r', '\n'}) classes[static_cast<unsigned char>(c)] = kBlank;
  for (std::size_t c = 0; c < classes.size(); ++c) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c >= 0x80;
    if (letter) classes[c] = kNameStart | kNamePart;
    if (c >= '0' && c <= '9') classes[c] = kDigit | kNamePart;
  }
  classes['$'] = kNamePart;
  return classes;
}();

constexpr bool Is(char c, Class wanted) noexcept { return (kClasses[static_cast<unsigned char>(c)] & wanted) != 0; }
constexpr bool IsDigit(char c) noexcept { return Is(c, kDigit); }
constexpr bool IsBlank(char c) noexcept { return Is(c, kBlank); }
constexpr bool IsNameStart(char c) noexcept { return Is(c, kNameStart); }
constexpr bool IsNamePart(char c) noexcept { return Is(c, kNamePart); }

// Marks a literal's kind in the shape; no statement's own text can hold it.
constexpr char kLiteralMark = '\x01';

class Scanner {
 public:
  Scanner(std::string_view sql, Lexed& lexed, bool keepTokens) : sql_(sql), lexed_(lexed), keepTokens_(keepTokens) {}

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
    if (c == '\'' || c == '"') return Text(c);
    if (c == '#') return DateBetweenSigns();
    if (c == '[') return BracketedName();
    if (IsDigit(c) || (c == '.' && at_ + 1 < sql_.size() && IsDigit(sql_[at_ + 1]) && !AfterName())) return Number(at_);
    if (IsNameStart(c)) return Name();
    if (c == '-' && !AfterOperand() && JoinsNumber()) return;
    Operator();
  }

  void Add(TokenKind kind, std::string_view text, std::size_t literal = 0) {
    last_ = {kind, text, static_cast<std::uint32_t>(literal)};
    if (keepTokens_) lexed_.tokens.push_back(last_);
  }

  // The literal's text, from begin to here, is the part of the statement that its shape leaves out.
  void AddLiteral(char mark, std::size_t begin, Variant value) {
    Add(TokenKind::Literal, {}, lexed_.literals.size());
    lexed_.literals.push_back(std::move(value));
    lexed_.shape += sql_.substr(written_, begin - written_);
    lexed_.shape += kLiteralMark;
    lexed_.shape += mark;
    written_ = at_;
  }

  void Text(char quote) {
    const std::size_t begin = at_;
    std::string value;
    for (++at_;; ++at_) {
      const std::size_t end = sql_.find(quote, at_);
      if (end == std::string_view::npos) Raise(EngineError::SyntaxInExpression, "texto sem as aspas que o encerram");
      value.append(sql_, at_, end - at_);
      at_ = end + 1;
      if (at_ >= sql_.size() || sql_[at_] != quote) break;
      value += quote;
    }
    AddLiteral('T', begin, std::move(value));
  }

  void DateBetweenSigns() {
    const std::size_t end = sql_.find('#', at_ + 1);
    if (end == std::string_view::npos) Raise(EngineError::SyntaxInExpression, "data sem o sinal # que a encerra");
    const auto date = ReadDateLiteral(sql_.substr(at_ + 1, end - at_ - 1));
    if (!date) Raise(EngineError::SyntaxInExpression, "data inválida entre sinais #");
    const std::size_t begin = at_;
    at_ = end + 1;
    AddLiteral('#', begin, *date);
  }

  void BracketedName() {
    const std::size_t end = sql_.find(']', at_);
    if (end == std::string_view::npos || end == at_ + 1)
      Raise(EngineError::SyntaxInExpression, "nome entre colchetes incompleto");
    Add(TokenKind::Bracketed, sql_.substr(at_ + 1, end - at_ - 1));
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
    if (length == 1 && kSingles.find(sql_[at_]) == std::string_view::npos) {
      Raise(EngineError::SyntaxInExpression, "caractere que não pertence à linguagem");
    }
    Add(TokenKind::Operator, sql_.substr(at_, length));
    at_ += length;
  }

  bool AfterName() const { return last_.kind == TokenKind::Name || last_.kind == TokenKind::Bracketed; }

  bool AfterOperand() const {
    if (last_.kind == TokenKind::Operator) return last_.text == ")";
    if (last_.kind == TokenKind::Name) return !ExpectsOperand(last_.text);
    return last_.kind != TokenKind::End;
  }

  // A power binds tighter than the sign before it, so such a number keeps its sign apart.
  bool JoinsNumber() {
    std::size_t digits = at_ + 1;
    while (digits < sql_.size() && IsBlank(sql_[digits])) ++digits;
    const bool number =
        digits < sql_.size() &&
        (IsDigit(sql_[digits]) || (sql_[digits] == '.' && digits + 1 < sql_.size() && IsDigit(sql_[digits + 1])));
    if (!number) return false;
    std::size_t after = EndOfNumber(digits);
    while (after < sql_.size() && IsBlank(sql_[after])) ++after;
    if (after < sql_.size() && sql_[after] == '^') return false;
    Number(digits, true);
    return true;
  }

  std::size_t EndOfNumber(std::size_t at) const {
    const auto digits = [&] {
      while (at < sql_.size() && IsDigit(sql_[at])) ++at;
    };
    digits();
    if (at < sql_.size() && sql_[at] == '.') {
      ++at;
      digits();
    }
    if (at < sql_.size() && (sql_[at] == 'e' || sql_[at] == 'E')) {
      std::size_t exponent = at + 1;
      if (exponent < sql_.size() && (sql_[exponent] == '+' || sql_[exponent] == '-')) ++exponent;
      if (exponent < sql_.size() && IsDigit(sql_[exponent])) {
        at = exponent;
        digits();
      }
    }
    return at;
  }

  void Number(std::size_t begin, bool negative = false) {
    const std::size_t sign = at_;
    const std::size_t end = EndOfNumber(begin);
    const std::string_view digits = sql_.substr(begin, end - begin);
    at_ = end;
    if (at_ < sql_.size() && IsNameStart(sql_[at_]) && !BeginsKeyword(sql_.substr(at_))) {
      Raise(EngineError::SyntaxInExpression, "letras logo após um número");
    }
    if (const auto units = ExactUnits(digits, negative)) {
      const std::int64_t whole = *units / Currency::kScale;
      if (digits.find('.') == std::string_view::npos && whole >= std::numeric_limits<std::int32_t>::min() &&
          whole <= std::numeric_limits<std::int32_t>::max()) {
        return AddLiteral('L', sign, static_cast<std::int32_t>(whole));
      }
      return AddLiteral('C', sign, Currency::FromTenThousandths(*units));
    }
    double value = 0;
    const auto [last, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    const bool tiny = digits.find("e-") != std::string_view::npos || digits.find("E-") != std::string_view::npos;
    if (error == std::errc::result_out_of_range && !tiny) tsv::Raise(RuntimeError::Overflow);
    AddLiteral('D', sign, negative ? -value : value);
  }

  static bool BeginsKeyword(std::string_view rest) {
    std::size_t length = 0;
    while (length < rest.size() && IsNamePart(rest[length])) ++length;
    return IsReserved(rest.substr(0, length));
  }

  // The number in ten-thousandths when it has no exponent, at most four decimals and lies in currency's range.
  static std::optional<std::int64_t> ExactUnits(std::string_view digits, bool negative) {
    std::string_view whole = digits.substr(0, digits.find('.'));
    std::string_view decimals = whole.size() < digits.size() ? digits.substr(whole.size() + 1) : std::string_view{};
    while (!decimals.empty() && decimals.back() == '0') decimals.remove_suffix(1);
    while (!whole.empty() && whole.front() == '0') whole.remove_prefix(1);
    if (decimals.size() > 4 || whole.size() > 15) return std::nullopt;
    std::uint64_t units = 0;
    for (const std::string_view part : {whole, decimals}) {
      for (const char c : part) {
        if (!IsDigit(c)) return std::nullopt;
        units = units * 10 + static_cast<std::uint64_t>(c - '0');
      }
    }
    for (std::size_t i = decimals.size(); i < 4; ++i) units *= 10;
    constexpr auto kLargest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (units > kLargest + (negative ? 1 : 0)) return std::nullopt;
    return static_cast<std::int64_t>(negative ? 0 - units : units);
  }

  std::string_view sql_;
  Lexed& lexed_;
  bool keepTokens_;
  Token last_;  // End before the first
  std::size_t at_ = 0;
  std::size_t written_ = 0;  // what stands before is in the shape
};

}  // namespace

namespace {

void Scan(std::string_view sql, Lexed& lexed, bool keepTokens) {
  lexed.tokens.clear();
  lexed.literals.clear();
  lexed.shape.clear();
  Scanner(sql, lexed, keepTokens).Run();
}

}  // namespace

void Lex(std::string_view sql, Lexed& lexed) { Scan(sql, lexed, true); }
void LexShape(std::string_view sql, Lexed& lexed) { Scan(sql, lexed, false); }

}  // namespace tsv::db::jet
