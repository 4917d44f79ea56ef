#pragma once

#include <string>
#include <vector>

#include "formula/clsEvalFormula.h"

namespace ktl {

struct Session;

// The value of an expression as a line of text.
std::string ResultText(const Value& result);

// The tokens of a formula that nothing was put in place of, as the formula writes them.
std::vector<std::string> UnreplacedTokens(const PreparedFormula& formula);

// The employee's detail row, its attendance head and the days of a month typed by a person. A CompanyError
// when there is no such month, employee or detail row.
DayRequest DayRequestOf(Session& session, long empId, const std::string& monthText);

// What became of a formula: its text, what replaced each token and where it came from, the text that was
// evaluated, its value or error, and the amount. What fails on the way is told in it.
std::string FormulaReport(Session& session, const FormulaRequest& request);

// The days of one month of one employee, by attendance and by advanced leave.
std::string DaysReport(Session& session, const DayRequest& request);

}  // namespace ktl
