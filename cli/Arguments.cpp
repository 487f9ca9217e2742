#include "Arguments.h"

#include <charconv>
#include <cmath>

#include "Failure.h"
#include "types/Conversions.h"
#include "types/Erro.h"
#include "types/Text.h"

namespace tsv::cli {
namespace {

[[noreturn]] void Unreadable(const char* what, std::string_view text, const char* advice) {
  throw Failure(kUsage, std::string(what) + " '" + std::string(text) + "': " + advice);
}

}  // namespace

Currency AmountFrom(std::string_view text) {
  const auto number = ReadNumber(text);
  if (!number) Unreadable("Valor inválido", text, "escreva por exemplo 150,00 ou -1.234,56.");
  if (number->decimals.size() > 2 && number->decimals.find_first_not_of('0', 2) != std::string::npos) {
    Unreadable("Valor inválido", text, "o livro guarda valores com duas casas decimais.");
  }
  try {
    return *Currency::FromText(text);
  } catch (const Erro&) {
    Unreadable("Valor inválido", text, "grande demais.");
  }
}

Date DateFrom(std::string_view text) {
  const auto date = Date::FromText(text);
  const bool isDay = date && date->Days() == std::floor(date->Days()) && date->Days() != 0;
  // A year of two digits could mean a century that nobody meant.
  const std::string_view trimmed = text::Trim(text);
  const std::size_t year = trimmed.rfind('/');
  const bool isShort = year != std::string_view::npos && trimmed.size() - year - 1 < 4;
  if (!isDay || isShort || trimmed.find(':') != std::string_view::npos) {
    Unreadable("Data inválida", text, "escreva dd/mm/aaaa ou aaaa-mm-dd.");
  }
  return *date;
}

void CheckPeriod(std::string_view from, std::string_view to) {
  if (from.empty() || to.empty() || DateFrom(from).Days() <= DateFrom(to).Days()) return;
  throw Failure(kUsage, "O período termina antes de começar: --ate vem antes de --de.");
}

std::int32_t NumberFrom(std::string_view text) {
  const std::string_view digits = text::Trim(text);
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc() || end != digits.data() + digits.size() || number < 0) {
    Unreadable("Número inválido", text, "escreva um número inteiro.");
  }
  return number;
}

void CheckText(std::string_view text) {
  if (!text::IsValidUtf8(text)) throw Failure(kUsage, "O texto não está em UTF-8.");
  if (text.find('\'') != std::string_view::npos) {
    throw Failure(kRefused, "Apóstrofos não são permitidos: '" + std::string(text) + "'.");
  }
  if (text.find_first_of("\r\n") != std::string_view::npos) throw Failure(kRefused, "Um texto é de uma só linha.");
}

std::string NotBlank(const std::string& text) {
  return text::Trim(text).empty() ? "não pode ficar em branco" : std::string();
}

Date Today() { return Date(std::floor(Date::Now().Days())); }

Date DayAfter(Date date) { return Date(std::floor(date.Days()) + 1); }

}  // namespace tsv::cli
