#pragma once

#include <string>
#include <vector>

#include "instructions/instruction_parent.h"
#include "instructions/schedule_month.h"
#include "recovery/adjustment.h"

namespace ktl {

struct Session;

// Which of the modified amounts of a month is meant: MDFYAMT, MDFPRNAMT, MDFINTAMT.
enum class Component { Amount, Principal, Interest };

double AmountOf(const ScheduleMonth& month, Component component);  // 0 for a null

// In the order of the months. Of the types with institutions a month without one is not listed, as in the
// parent. Recovered, of advances and loans only, is what the parent's list marks.
std::vector<ScheduleMonth> ReadEmiMonths(Session& session, InstructionParent& parent);

std::vector<AdjustableMonth> AdjustableMonths(const std::vector<ScheduleMonth>& months, Component component);

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
