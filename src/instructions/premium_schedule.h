#pragma once

#include <vector>

#include "instructions/instruction_parent.h"

namespace ktl {

struct Session;

// How often a premium or an incentive is due: the step of its schedule in months.
enum class PremiumPeriod : long { Monthly = 1, Quarterly = 3, HalfYearly = 6, Yearly = 12 };

// The same amount in every month that is due: nothing is divided, and the last month gets no rest.
struct PremiumTerms {
  double amount = 0;  // rupees
  long firstMonth = 0;
  long lastMonth = 0;  // month-years, both counted in
  PremiumPeriod period = PremiumPeriod::Monthly;
};

// From the first month by the step; the last one need not be reached.
std::vector<long> PremiumMonths(const PremiumTerms& terms);

// As the first two months of a schedule show it; every month where they show none.
PremiumPeriod PeriodOf(const std::vector<long>& months);

// Writes the schedule of an instruction that has none. False when rows are there already. The institution is
// 0 for none.
bool WritePremiumSchedule(Session& session, const InstructionKey& key, const PremiumTerms& terms,
                          long institution);

}  // namespace ktl
