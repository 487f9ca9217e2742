#pragma once

#include <string>
#include <string_view>

#include "types/Currency.h"
#include "types/Date.h"

// Values as a person types them, on the command line and in files. What cannot be read is a usage failure whose text
// names the value.
namespace tsv::cli {

// "150", "1.234,56", "-0,50": at most two decimals, as the ledger keeps them.
Currency AmountFrom(std::string_view text);

// dd/mm/aaaa or aaaa-mm-dd, without a time of day.
Date DateFrom(std::string_view text);

// Both ends may be empty; a period that ends before it begins is refused.
void CheckPeriod(std::string_view from, std::string_view to);

std::int32_t NumberFrom(std::string_view text);  // a whole number from 0 on

// Histories, documents and codes: one line of UTF-8 without an apostrophe, which no statement of the ledger can hold.
void CheckText(std::string_view text);

// For options that may be left out but not left empty, as by a variable that nobody set: why the text is refused.
std::string NotBlank(const std::string& text);

Date Today();
Date DayAfter(Date date);

}  // namespace tsv::cli
