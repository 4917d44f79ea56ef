#pragma once

#include <string>
#include <vector>

#include "instructions/instruction_parent.h"
#include "recovery/adjustment.h"
#include "runtime/value.h"

namespace ktl {

struct Session;

// Which of the modified amounts of a month is meant: MDFYAMT, MDFPRNAMT, MDFINTAMT.
enum class Component { Amount, Principal, Interest };

// One month of an instruction as stored.
struct EmiMonth {
  long counter = 0;
  long monthYear = 0;
  Value ACTPRNAMT, ACTINTAMT, EMIAMT;
  Value MDFPRNAMT, MDFINTAMT, MDFYAMT;
  std::string institution;
  std::string remarks;
  bool recovered = false;  // as the parent's list marks it, types 1 and 2 only

  double Of(Component component) const;  // 0 for a null
};

// In the order of the months. Of the types with institutions a month without one is not listed, as in the
// parent.
std::vector<EmiMonth> ReadEmiMonths(Session& session, InstructionParent& parent);

std::vector<AdjustableMonth> AdjustableMonths(const std::vector<EmiMonth>& months, Component component);

// Of the parent's overview row of the instruction; all 0 when it has none.
struct OverviewAmounts {
  double amount = 0;
  double interest = 0;
  double emi = 0;
  double recovered = 0;
  double receipts = 0;
};
OverviewAmounts ReadOverview(InstructionParent& parent);

// "No end" of a range of months, as the employee lock takes it.
inline constexpr const char* kNoLastMonth = "36000";

// SINAME of an advance or loan, OTHNAME of the others.
std::string ReadInstructionName(Session& session, const InstructionKey& key);
// Locked months of the range, each asked by itself.
long CountLockedMonths(Session& session, long firstMonth, long lastMonth);
// The same in one query.
long CountLockedMonthsAtOnce(Session& session, long firstMonth, long lastMonth);
// "3 Month(s) locked. Cannot save." and how to go on.
std::string LockedMonthsText(long count);

}  // namespace ktl
