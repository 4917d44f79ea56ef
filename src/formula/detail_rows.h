#pragma once

#include <optional>
#include <unordered_map>
#include <vector>

namespace ktl {

struct Session;

// Of the detail rows in effect in a month, the one that a formula takes: screens differ in it.
enum class DetailRowRule { LatestMonth, HighestNumber };

// Nothing when no row is in effect then. Throws when the read fails.
std::optional<long> DetailRowOfMonth(Session& session, long empId, long monthYear,
                                     DetailRowRule rule = DetailRowRule::LatestMonth);
// The latest row of many, by employee; those without one are left out.
std::unordered_map<long, long> DetailRowsOfMonth(Session& session, const std::vector<long>& employees,
                                                 long monthYear);

}  // namespace ktl
