#pragma once

#include <optional>
#include <vector>

#include "instructions/instruction_parent.h"
#include "instructions/schedule_month.h"
#include "runtime/date.h"

namespace ktl {

struct Session;

struct InterestTerms {
  double rate = 0;          // a year, as a fraction: 0.12
  double firstMonths = 1;   // how many months' interest the first row bears
  bool daysBasis = false;   // days / 365 instead of a twelfth of the year
  bool exactDates = false;  // the first month counts from the start, the leaving month to its day

  double balance = 0;         // before the first month
  std::optional<Date> start;  // without one the first month counts whole
  Date leaving;
};

// The interest of each month, in whole rupees: the modified principal of a month lowers the balance of those
// behind it. 0 behind the leaving month when exact dates count.
std::vector<double> ReducingInterest(const std::vector<ScheduleMonth>& months, const InterestTerms& terms);

// What was chosen, with balance, start and leaving date of the instruction. Who has not left leaves at the
// end of 2099.
InterestTerms ReadInterestTerms(Session& session, const InstructionKey& key, InterestTerms chosen);

}  // namespace ktl
