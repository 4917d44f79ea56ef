#pragma once

namespace ktl {

struct Session;

// Carries the monthly interest of reducing schedules to the total interest of their instructions, for all
// employees. An instruction whose interest is null is never refreshed.
void RefreshTotalInterest(Session& session);

}  // namespace ktl
