#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "db/jet/TextValues.h"
#include "db/sqlite/Rounding.h"
#include "db/sqlite/SqlFunction.h"
#include "db/sqlite/StoredValue.h"
#include "types/Conversions.h"
#include "types/Erro.h"

namespace tsv::db::sqlite {
namespace {

Variant Read(const FunctionCall& call, ValueType type) { return ReadStored(call.arguments[0], type); }

void Like(const FunctionCall& call) { call.Return(jet::Like(call.Text(0), call.Text(1))); }

bool IsNull(const FunctionCall& call, std::size_t i) { return sqlite3_value_type(call.arguments[i]) == SQLITE_NULL; }

// Null & '*' is the pattern '*', which every text matches.
void LikePrefix(const FunctionCall& call) {
  if (IsNull(call, 0)) return;
  call.Return(IsNull(call, 1) || jet::LikePrefix(call.Text(0), call.Text(1)));
}

void Concat(const FunctionCall& call) {
  if (IsNull(call, 0) && IsNull(call, 1)) return;
  call.Return(std::string(call.Text(0)).append(call.Text(1)));
}

double Finite(double value) {
  if (!std::isfinite(value)) Raise(RuntimeError::Overflow);
  return value;
}

void Divide(const FunctionCall& call) {
  if (call.Real(1) == 0) Raise(RuntimeError::DivisionByZero);
  call.Return(Finite(call.Real(0) / call.Real(1)));
}

// \ and MOD take whole operands; a fraction is rounded first, halves to even.
std::int64_t WholeOperand(const FunctionCall& call, std::size_t i) { return ToLong(call.Real(i)); }

std::int64_t WholeDivisor(const FunctionCall& call) {
  const std::int64_t divisor = WholeOperand(call, 1);
  if (divisor == 0) Raise(RuntimeError::DivisionByZero);
  return divisor;
}

void IntegerDivide(const FunctionCall& call) {
  const std::int64_t quotient = WholeOperand(call, 0) / WholeDivisor(call);
  if (quotient > std::numeric_limits<std::int32_t>::max()) Raise(RuntimeError::Overflow);
  call.Return(quotient);
}

void Modulo(const FunctionCall& call) { call.Return(WholeOperand(call, 0) % WholeDivisor(call)); }

void Power(const FunctionCall& call) {
  const double base = call.Real(0);
  const double exponent = call.Real(1);
  if (base == 0 && exponent < 0) Raise(RuntimeError::DivisionByZero);
  const double power = std::pow(base, exponent);
  if (std::isnan(power)) Raise(RuntimeError::InvalidArgument);
  call.Return(Finite(power));
}

void CurrencyMultiply(const FunctionCall& call) { call.Return(ScaledProduct(call.Integer(0), call.Integer(1))); }

template <ValueType from, ValueType to>
void ConvertTo(const FunctionCall& call) {
  ReturnStored(call.context, Read(call, from), to);
}

template <auto parse, ValueType to>
void Parse(const FunctionCall& call) {
  ReturnStored(call.context, parse(call.Text(0)), to);
}

template <ValueType from>
void Write(const FunctionCall& call) {
  ReturnStored(call.context, jet::TextOf(Read(call, from)), ValueType::Text);
}

void DateToDays(const FunctionCall& call) { call.Return(std::get<Date>(Read(call, ValueType::Date)).Days()); }
void DaysToDate(const FunctionCall& call) { call.Return(Date(call.Real(0)).ToIso()); }

}  // namespace

void RegisterHelperFunctions(Connection& connection) {
  using enum ValueType;
  const FunctionTraits meetsNull = {.passesNull = false};
  AddFunction(connection, "tsv_like", 2, Like);
  AddFunction(connection, "tsv_like_prefix", 2, LikePrefix, meetsNull);
  AddFunction(connection, "tsv_concat", 2, Concat, meetsNull);
  AddFunction(connection, "tsv_divide", 2, Divide);
  AddFunction(connection, "tsv_integer_divide", 2, IntegerDivide);
  AddFunction(connection, "tsv_modulo", 2, Modulo);
  AddFunction(connection, "tsv_power", 2, Power);
  AddFunction(connection, "tsv_currency_multiply", 2, CurrencyMultiply);
  AddFunction(connection, "tsv_date_to_days", 1, DateToDays);
  AddFunction(connection, "tsv_days_to_date", 1, DaysToDate);
  AddFunction(connection, "tsv_round_long", 1, ConvertTo<Double, Long>);
  AddFunction(connection, "tsv_currency", 1, ConvertTo<Double, ValueType::Currency>);
  AddFunction(connection, "tsv_long_from_currency", 1, ConvertTo<ValueType::Currency, Long>);
  AddFunction(connection, "tsv_parse_long", 1, Parse<jet::ParseLong, Long>);
  AddFunction(connection, "tsv_parse_currency", 1, Parse<jet::ParseCurrency, ValueType::Currency>);
  AddFunction(connection, "tsv_parse_double", 1, Parse<jet::ParseDouble, Double>);
  AddFunction(connection, "tsv_parse_date", 1, Parse<jet::ParseDate, ValueType::Date>);
  AddFunction(connection, "tsv_parse_boolean", 1, Parse<jet::ParseBoolean, Boolean>);
  AddFunction(connection, "tsv_text_currency", 1, Write<ValueType::Currency>);
  AddFunction(connection, "tsv_text_double", 1, Write<Double>);
  AddFunction(connection, "tsv_text_date", 1, Write<ValueType::Date>);
}

}  // namespace tsv::db::sqlite
