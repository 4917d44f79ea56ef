#pragma once

#include <string>

#include "benefit/benefit_year.h"
#include "common/statement.h"

namespace ktl {

struct Session;

// The months of loans, each with its balance, principal, interest and benchmark interest: what every figure
// of the benefit is made of. The readers differ in what is named here, and in nothing else.
struct MonthStatement {
  Statement leading;     // the columns in front
  Statement opening;     // the balance that is shown
  Statement benchmark;   // ... that the benchmark interest is reckoned on
  Statement difference;  // ... and the difference
  Statement rate;        // as a fraction
  Statement from;        // the tables, IE for the instalments, and the conditions behind
};
Statement WriteMonths(const Session& session, const MonthStatement& months);

// The loans and instalments that belong together, and those of the year.
Statement MonthsOfLoans(const Session& session, const BenefitYear& year);

// Pieces of a month's balance. What a sum of nothing counts as is said by the caller.
Statement LaterPrincipal(const Session& session, const std::string& amount, int nothing);
Statement ReceiptsSoFar();
Statement ReceiptsOfMonth();
Statement Less(const Session& session, const Statement& principal, const Statement& receipts);

// One loan name of one employee: every month with a balance. Neither the employee nor the name is asked for
// its flags.
Statement MonthsOfOneLoan(const Session& session, const BenefitYear& year, long employee,
                          const std::string& name);
// One serial number. Its balance has no receipts taken off, its difference those of the very month alone, and
// the rate is the year's plain one: with receipts or a rate of its own the figures differ from those above.
Statement MonthsOfSerial(const Session& session, const BenefitYear& year, long employee,
                         const std::string& name, long serial, double plainRate);

}  // namespace ktl
