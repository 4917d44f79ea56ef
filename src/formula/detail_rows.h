#pragma once

#include <optional>
#include <unordered_map>
#include <vector>

namespace ktl {

struct Session;

// The detail row with the latest effective month that is not after the month: the one that the callers of a
// formula take. Throws when the read fails.
std::optional<long> DetailRowOfMonth(Session& session, long empId, long monthYear);
// The same for many, by employee; those without one are left out.
std::unordered_map<long, long> DetailRowsOfMonth(Session& session, const std::vector<long>& employees,
                                                 long monthYear);

}  // namespace ktl
