#include "common/Literals.h"

#include <algorithm>
#include <optional>

#include "common/Errors.h"
#include "types/Conversions.h"
#include "types/Text.h"

namespace tsv::Module1 {

namespace {

constexpr const char* kNotNumeric = "Valor não numérico.";

bool IsMissing(const Variant& value) { return IsNull(value) || IsEmpty(value) || text::Trim(ToText(value)).empty(); }

std::string Joined(std::string_view a, std::string_view b) { return std::string(a).append(b); }

}  // namespace

std::string NtoDB(std::string_view texto, std::string_view textoVazio, std::string_view prefixo) {
  const std::string_view trimmed = text::Trim(texto);
  if (trimmed.empty()) return Joined(prefixo, textoVazio);
  const std::optional<NumberText> number = ReadNumber(trimmed);
  if (!number) throw Erro(TS_ERRO_LANCAMENTO, kNotNumeric, "NtoDB");
  if (number->IsZero()) return Joined(prefixo, textoVazio);
  std::string digits(trimmed);
  std::erase(digits, '.');
  std::replace(digits.begin(), digits.end(), ',', '.');
  return Joined(prefixo, digits);
}

std::string StoDB(std::string_view texto, std::string_view textoVazio, std::string_view prefixo) {
  if (texto.empty() && text::Upper(textoVazio) == "NULL") return Joined(prefixo, textoVazio);
  std::string literal(prefixo);
  literal += '\'';
  literal += texto.empty() ? textoVazio : texto;
  literal += '\'';
  return literal;
}

std::string DataSQL(Date data, std::int32_t formato) {
  const bool hasDay = formato == 1 || formato == 2;
  const bool hasTime = formato == 1 || formato == 3;
  if (data == Date()) return "NULL";
  if (!hasDay && !hasTime) throw Erro(TS_ERRO_LANCAMENTO, "Formato de data inválido.", "DataSQL");
  const CivilTime t = data.ToCivil();
  std::string literal = "#";
  const auto append = [&](int number, int digits, std::string_view after) {
    AppendDigits(literal, number, digits);
    literal += after;
  };
  if (hasDay) {
    append(t.month, 2, "/");
    append(t.day, 2, "/");
    append(t.year, 4, hasTime ? " " : "");
  }
  if (hasTime) {
    append(t.hour, 2, ":");
    append(t.minute, 2, ":");
    append(t.second, 2, "");
  }
  return literal += '#';
}

std::string VtoS(const Variant& valor, const Variant& padrao) { return ToText(IsNull(valor) ? padrao : valor); }

bool VtoB(const Variant& valor, const Variant& padrao) {
  const bool whenMissing = ToBoolean(padrao);
  if (IsMissing(valor)) return whenMissing;
  if (IsNumeric(valor)) return ToBoolean(valor);
  return text::Upper(ToText(valor)) == "TRUE";
}

Variant VtoN(const Variant& valor, const Variant& padrao) {
  if (IsMissing(valor)) return padrao;
  if (!IsNumeric(valor) && !IsDate(valor)) throw Erro(TS_ERRO_LANCAMENTO, kNotNumeric);
  return valor;
}

}  // namespace tsv::Module1
