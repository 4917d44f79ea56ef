#pragma once

#include "benefit/benefit_year.h"
#include "common/statement.h"
#include "database/statement_twin.h"

namespace ktl {

struct Session;

// Which loans of an employee make his benefit of the year.
enum class LoanRule {
  EveryLoan,
  PaidMoreThan20000,  // the rule of the income tax: and carried over to the next year
  SeveralMonths,      // of benefit
};

// A statement of the year with its equivalent for the embedded store.
struct YearlyStatement {
  Statement said;
  Statement embedded;

  operator StatementTwin() const { return {.said = said, .embedded = embedded}; }
};

// The yearly benefit of every employee and the two statements that clear whom it leaves out. To be run in
// this order: on the embedded store the first one reckons the months, once for all three, and the last one
// lets them go.
struct YearlyStatements {
  YearlyStatement clearWithoutBenefit;  // whose best loan has none, over all months
  YearlyStatement clearUnlisted;        // who has no such loan at all any more
  YearlyStatement main;                 // an employee a row
};
YearlyStatements WriteYearlyStatements(const Session& session, const BenefitYear& year, LoanRule rule);

// The loans of one employee with all their months, those without a benefit too.
Statement LoansOfEmployee(const Session& session, const BenefitYear& year, long employee);

}  // namespace ktl
