#pragma once

#include <vector>

#include "instructions/premium_row.h"
#include "instructions/schedule_month.h"

namespace ktl {

struct Session;

struct PremiumListRow {
  long serial = 0;
  PremiumRow premium;
};
// An employee's instructions of the type.
std::vector<PremiumListRow> ReadPremiumList(Session& session, long employee, InstructionType type);

// In the order of the months, without those that hold no amount any more, and without those of an institution
// of another type. Recovered by salary means that the salary took something under the type's head.
std::vector<ScheduleMonth> ReadPremiumSchedule(Session& session, const InstructionKey& key);

struct PremiumTotals {
  double scheduled = 0;
  double fromSalary = 0;
  double Due() const { return scheduled - fromSalary; }
};
PremiumTotals ReadPremiumTotals(Session& session, long employee, InstructionType type);

FundSwitches ReadFundSwitches(Session& session, long employee);

// As INS_MASTER spells it; "" for a name that is not there.
std::string NameAsListed(Session& session, InstructionType type, std::string_view name);

}  // namespace ktl
