#pragma once

#include <string>

namespace ktl {

// The subcommands that show how formulas and days come out, on standard output. A CompanyError when they
// cannot. argv0 tells the program's folder.

struct FormulaArguments {
  std::string file;
  long formulaId = 0;
  long empId = 0;
  std::string month;
};

void PrintExpression(const char* argv0, const std::string& expression);
void PrintFormula(const char* argv0, const FormulaArguments& arguments);
void PrintDays(const char* argv0, const FormulaArguments& arguments);  // formulaId does not count

}  // namespace ktl
