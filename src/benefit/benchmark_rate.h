#pragma once

#include <optional>
#include <string>
#include <vector>

#include "common/statement.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// The benchmark rate of a financial year: a default one, and others for the loans that a row names.

inline constexpr const char* kNameMarker = "#$#";  // on both sides of every name in a row's list

// As part of a statement over INS_ADVLOAN IA: the rate of the loan's name, as a fraction.
Statement RateOverLoans(const Session& session, const std::string& year);
// The statement for the rate of one name, in percent.
Statement RateOfLoan(const Session& session, const std::string& year, const std::string& name);

// The rate of the year's first row, in percent; nothing when it has none.
std::optional<double> PlainRate(Session& session, const std::string& year);

// The names of loans whose interest makes a benefit, with their place in the list.
std::vector<ListRow> ReadBenefitLoans(Session& session);

}  // namespace ktl
