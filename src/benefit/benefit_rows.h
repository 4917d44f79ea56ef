#pragma once

#include <optional>
#include <string>
#include <vector>

#include "benefit/benefit_year.h"
#include "runtime/date.h"

namespace ktl {

struct Session;

// The stored benefit of an employee and year.
struct BenefitRow {
  long employee = 0;
  std::string number;  // by the company's numbering
  std::string name;
  double opening = 0;
  double principal = 0;
  double interest = 0;   // charged
  double benchmark = 0;  // what it would be at the benchmark rate
  double edited = 0;     // the benefit that is kept
  double original = 0;   // ... as it was reckoned
  double fromTax = 0;    // what the income tax has of its own; a port does not change it

  // As both are shown.
  bool IsEdited() const;
};
std::vector<BenefitRow> ReadBenefitRows(Session& session, const BenefitYear& year, const std::string& search);

// Throws ChangedMeanwhile when one of the rows is no longer as it was shown.
void RequireAsShown(Session& session, const BenefitYear& year, const std::vector<const BenefitRow*>& shown);

// A benefit typed into its cell: nothing when it is none, which `refused` tells then. A minus is dropped, an
// empty text is 0.
std::optional<double> TypedBenefit(std::string typed, std::string& refused);

// Keeps another benefit for the employee. Throws ChangedMeanwhile, with nothing written, when the row is no
// longer as it was shown.
void StoreEdited(Session& session, const BenefitYear& year, const BenefitRow& shown, double benefit);
// ... for each the one that was reckoned, where it is another.
void StorePrevious(Session& session, const BenefitYear& year, const std::vector<BenefitRow>& shown);

// One loan of an employee over the year, months without a benefit too.
struct BenefitLoan {
  std::string name;
  std::optional<Date> date;
  double opening = 0;
  double principal = 0;
  double interest = 0;
  double benchmark = 0;
  double difference = 0;

  std::string Title() const;  // "Vehicle Loan (01/Jan/26)"
};
std::vector<BenefitLoan> ReadLoansOfEmployee(Session& session, const BenefitYear& year, long employee);

}  // namespace ktl
