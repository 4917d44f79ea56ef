#pragma once

#include <optional>
#include <string>
#include <vector>

#include "benefit/benefit_year.h"
#include "common/statement.h"
#include "runtime/date.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// The conditions of every list of the benefit: whom the user may see (which fills the workstation's table),
// and in whose name or number the searched text stands. E is the employee.
Statement EmployeeFilter(Session& session, const std::string& search);

// Who has instalments of such a loan in the year.
struct BenefitHolder {
  long employee = 0;
  std::string number;  // by the company's numbering
  std::string name;
  std::string loans;  // the names of his loans of that kind, with commas between them
};
// Of every loan name without one.
std::vector<BenefitHolder> ReadBenefitHolders(Session& session, const BenefitYear& year,
                                              const std::string& loan, const std::string& search);

// His loans of the name: each a row with the serial number as its text.
std::vector<ListRow> ReadLoanSerials(Session& session, const BenefitYear& year, long employee,
                                     const std::string& loan);

// One month of a loan.
struct BenefitMonth {
  long monthYear = 0;
  std::optional<Date> loanDate;
  double opening = 0;
  double principal = 0;
  double interest = 0;   // charged
  double benchmark = 0;  // what it would be at the benchmark rate
  double difference = 0;

  std::string Name() const;  // of the month; that of the loan's date when the month is 0
};
std::vector<BenefitMonth> ReadBenefitMonths(Session& session, const Statement& months);

}  // namespace ktl
