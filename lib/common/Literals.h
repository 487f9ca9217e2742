#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "types/Variant.h"

// How values become literals of a statement, and how fields and optional arguments become plain values. Errors are
// TS_ERRO_LANCAMENTO and are raised without a handler: the calling operation's origin is the one that clients see.
namespace tsv::Module1 {

// The text of a number in the Brazilian form, as a number with a decimal point: "1.234,5" gives 1234.5. An empty text
// and zero give textoVazio: an identifier of zero matches no row. No number: "Valor não numérico.", origin "NtoDB".
std::string NtoDB(std::string_view texto, std::string_view textoVazio, std::string_view prefixo);

// The text between apostrophes, as it is: what goes into a statement passes through TextLiteral (Statement.h). An
// empty text gives textoVazio, which stands without apostrophes when it is NULL.
std::string StoDB(std::string_view texto, std::string_view textoVazio, std::string_view prefixo);

// 1: #mm/dd/yyyy hh:mm:ss#, 2: #mm/dd/yyyy#, 3: #hh:mm:ss#; the zero date is NULL in every format. Another format:
// "Formato de data inválido.", origin "DataSQL".
std::string DataSQL(Date data, std::int32_t formato);

std::string VtoS(const Variant& valor, const Variant& padrao = std::string());  // Null gives the default

// Null, Empty and blank text give the default; numbers and the texts TRUE and FALSE their meaning; all else False.
bool VtoB(const Variant& valor, const Variant& padrao = false);

// Null, Empty and blank text give the default; numbers, dates and texts of either stay as they are. Anything else:
// "Valor não numérico.", without an origin.
Variant VtoN(const Variant& valor, const Variant& padrao = 0.0);

}  // namespace tsv::Module1
