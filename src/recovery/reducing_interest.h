#pragma once

#include <optional>
#include <vector>

#include "instructions/instruction_parent.h"
#include "runtime/date.h"

namespace ktl {

struct Session;

// A month of a reducing instruction: its principal lowers the balance of the months behind it.
struct BalanceMonth {
  long monthYear = 0;
  double principal = 0;
};

struct InterestTerms {
  double rate = 0;            // a year, as a fraction: 0.12
  double balance = 0;         // before the first month
  double firstMonths = 1;     // how many months' interest the first row bears
  bool daysBasis = false;     // days / 365 instead of a twelfth of the year
  bool exactDates = false;    // the first month counts from the start, the leaving month to its day
  std::optional<Date> start;  // without one the first month counts whole
  Date leaving;
};

// The interest of each month, in whole rupees; 0 behind the leaving month when exact dates count.
std::vector<double> ReducingInterest(const std::vector<BalanceMonth>& months, const InterestTerms& terms);

// Balance, start and leaving date of the instruction. Who has not left leaves at the end of 2099.
InterestTerms ReadInterestTerms(Session& session, const InstructionKey& key);

}  // namespace ktl
