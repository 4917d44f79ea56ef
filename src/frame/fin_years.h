#pragma once

#include <string>
#include <vector>

#include "screen/controls.h"

namespace ktl {

struct Session;

// The financial years that the company has months of, newest first, as "2025 - 2026".
std::vector<ListRow> ReadFinYears(Session& session);
// The year that such a text begins with, 0 for none.
long FinYearOf(const std::string& text);

}  // namespace ktl
