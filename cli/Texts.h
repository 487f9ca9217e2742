#pragma once

#include <cstdint>
#include <string>

#include "types/Currency.h"
#include "types/Date.h"
#include "types/Variant.h"

// How values are shown to people and to programs.
namespace tsv::cli {

std::string Amount(Currency value);       // "1.234,50": grouped, at least two decimals
std::string PlainAmount(Currency value);  // "1234.50": at least two decimals
std::string Day(Date date);               // "05/07/2008"
std::string IsoMoment(Date date);         // "2008-07-05", with "T09:08:07" unless it is midnight
std::string Count(std::int64_t number);   // "1.234"
std::string Shown(const Variant& value);  // for a table; Null is empty

// "1 lançamento", "1.234 lançamentos".
std::string Count(std::int64_t number, const char* one, const char* many);

std::string OneLine(std::string text);  // line feeds become blanks

}  // namespace tsv::cli
