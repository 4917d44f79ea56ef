#pragma once

#include <string>
#include <string_view>

namespace ktl {

struct Session;

// Marks the income-tax flags of INC_PORTEDSTAT after a change, by code (0 to 15). dateText may be empty: the
// from month counts then. condition goes behind the "Where TDSYN = 1 And " of the codes that mark many
// employees.
void UpdateIncPortedStat(Session& session, int code, long employee, long fromMonth, std::string_view dateText,
                         long toMonth, std::string_view condition = "");

}  // namespace ktl
