#pragma once

#include <string>

#include "formula/clsExprEval.h"
#include "runtime/value.h"

namespace ktl {

// Rows of a token table. `source` says where the text comes from; it lives as long as the program.

// A number stands bare; null is 0.
void AddNumber(TokenTable& table, std::string token, const Value& value, const char* source);
// A text stands in double quotes. One that holds a quote breaks the formula; it is put in as it is.
void AddText(TokenTable& table, std::string token, const std::string& text, const char* source);
// A date as "DD/MMM/YYYY".
void AddDate(TokenTable& table, std::string token, const std::string& date, const char* source);

// The column of a salary head; empty for a head beyond the highest one.
std::string SalaryField(bool earning, long salHeadRowId, long highestHead);

}  // namespace ktl
