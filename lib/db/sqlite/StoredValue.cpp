#include "db/sqlite/StoredValue.h"

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>

#include "db/EngineError.h"
#include "db/jet/TextValues.h"
#include "types/Conversions.h"
#include "types/Erro.h"

namespace tsv::db::sqlite {
namespace {

ValueType OwnType(const Variant& value) {
  switch (value.index()) {
    case 2:
      return ValueType::Boolean;
    case 3:
    case 4:
      return ValueType::Long;
    case 5:
      return ValueType::Double;
    case 6:
      return ValueType::Currency;
    case 7:
      return ValueType::Date;
    default:
      return ValueType::Text;
  }
}

// Hands the stored form of a value to a sink: Null(), Integer(n), Real(x), OwnText(s), which is the value's, or
// MadeText(s), which lives for the call.
template <typename Sink>
void Store(const Variant& value, ValueType type, Sink&& sink) {
  if (IsNull(value)) return sink.Null();
  switch (type == ValueType::Null ? OwnType(value) : type) {
    case ValueType::Boolean:
      return sink.Integer(ToBoolean(value) ? 1 : 0);
    case ValueType::Byte:
      return sink.Integer(ToByte(value));
    case ValueType::Long:
      return sink.Integer(ToLong(value));
    case ValueType::Decimal:
    case ValueType::Currency:
      return sink.Integer(ToCurrency(value).TenThousandths());
    case ValueType::Double:
      return sink.Real(ToDouble(value));
    case ValueType::Date:
      return sink.MadeText(ToDate(value).ToIso());
    case ValueType::Null:
    case ValueType::Text:
      break;
  }
  if (const auto* text = std::get_if<std::string>(&value)) return sink.OwnText(*text);
  sink.MadeText(jet::TextOf(value));
}

int Length(std::string_view text) {
  if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    Raise(EngineError::Unsupported, "texto longo demais");
  return static_cast<int>(text.size());
}

struct BindingSink {
  sqlite3_stmt* statement;
  int place;
  Texts texts;

  void Null() const { sqlite3_bind_null(statement, place); }
  void Integer(std::int64_t value) const { sqlite3_bind_int64(statement, place, value); }
  void Real(double value) const { sqlite3_bind_double(statement, place, value); }
  void OwnText(std::string_view text) const {
    sqlite3_bind_text(statement, place, text.data(), Length(text),
                      texts == Texts::Lent ? SQLITE_STATIC : SQLITE_TRANSIENT);
  }
  void MadeText(std::string_view text) const {
    sqlite3_bind_text(statement, place, text.data(), Length(text), SQLITE_TRANSIENT);
  }
};

struct ReturningSink {
  sqlite3_context* context;

  void Null() const { sqlite3_result_null(context); }
  void Integer(std::int64_t value) const { sqlite3_result_int64(context, value); }
  void Real(double value) const { sqlite3_result_double(context, value); }
  void OwnText(std::string_view text) const { MadeText(text); }
  void MadeText(std::string_view text) const {
    sqlite3_result_text(context, text.data(), Length(text), SQLITE_TRANSIENT);
  }
};

std::string_view TextOf(sqlite3_value* value) {
  const unsigned char* text = sqlite3_value_text(value);
  const int size = sqlite3_value_bytes(value);
  return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(text ? size : 0)};
}

std::int64_t Whole(sqlite3_value* value) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      return sqlite3_value_int64(value);
    case SQLITE_FLOAT:
      Raise(RuntimeError::Overflow);
    default:
      Raise(EngineError::ConversionError);
  }
}

template <typename Integer>
Integer InRange(std::int64_t value) {
  if (value < std::numeric_limits<Integer>::min() || value > std::numeric_limits<Integer>::max()) {
    Raise(RuntimeError::Overflow);
  }
  return static_cast<Integer>(value);
}

int Digits(std::string_view text, std::size_t begin, std::size_t count) {
  int number = 0;
  for (const char c : text.substr(begin, count)) {
    if (c < '0' || c > '9') Raise(EngineError::ConversionError);
    number = number * 10 + (c - '0');
  }
  return number;
}

Date ReadDate(std::string_view text) {
  if (text.size() != std::string_view("yyyy-mm-dd hh:mm:ss").size()) Raise(EngineError::ConversionError);
  return Date::FromCivil({Digits(text, 0, 4), Digits(text, 5, 2), Digits(text, 8, 2), Digits(text, 11, 2),
                          Digits(text, 14, 2), Digits(text, 17, 2)});
}

}  // namespace

void BindStored(Statement& statement, int place, const Variant& value, ValueType type, Texts texts) {
  Store(value, type, BindingSink{statement.Handle(), place, texts});
}

void ReturnStored(sqlite3_context* context, const Variant& value, ValueType type) {
  Store(value, type, ReturningSink{context});
}

Variant ReadStored(sqlite3_value* value, ValueType type) {
  if (sqlite3_value_type(value) == SQLITE_NULL) return Null();
  switch (type) {
    case ValueType::Boolean:
      return Whole(value) != 0;
    case ValueType::Byte:
      return InRange<std::uint8_t>(Whole(value));
    case ValueType::Long:
      return InRange<std::int32_t>(Whole(value));
    case ValueType::Decimal:
      return Currency::FromTenThousandths(Whole(value)).ToDouble();
    case ValueType::Currency:
      return Currency::FromTenThousandths(Whole(value));
    case ValueType::Double:
      return sqlite3_value_double(value);
    case ValueType::Date:
      return ReadDate(TextOf(value));
    case ValueType::Null:
    case ValueType::Text:
      break;
  }
  return std::string(TextOf(value));
}

}  // namespace tsv::db::sqlite
