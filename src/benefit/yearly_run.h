#pragma once

#include "benefit/benefit_year.h"
#include "benefit/yearly_statement.h"

namespace ktl {

class Progress;
struct Session;

// Reckons the benefit of the year anew for everybody: clears and undoes whom it leaves out, then writes a row
// an employee. A figure that was edited stands. What was written before a failure stays.
void RecalculateBenefit(Session& session, Progress& progress, const BenefitYear& year, LoanRule rule);

// Carries an amount to the income tax of the employee. Who has no assessment gets his flag alone.
void PortBenefit(Session& session, const BenefitYear& year, long employee, double amount);
// The same with the audit line.
void PortBenefitAudited(Session& session, const BenefitYear& year, long employee, double amount);

// From the closing year on the rule of the income tax holds.
long FirstYearOfRule(Session& session);

}  // namespace ktl
