#pragma once

#include "database/statement_twin.h"

namespace ktl {

struct Session;

// Carries the monthly interest of reducing schedules to the total interest of their instructions, for all
// employees. An instruction whose interest is null is never refreshed.
void RefreshTotalInterest(Session& session);

// Its statement. The embedded store sums only what was touched since the last time; the setup is part of
// every new company.
extern const StatementTwin kTotalInterest;

}  // namespace ktl
