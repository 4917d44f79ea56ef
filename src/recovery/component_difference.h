#pragma once

#include "common/statement.h"

namespace ktl {

struct Session;

// Principal and interest of one month that are kept apart.
struct MonthComponents {
  double principal = 0;
  double interest = 0;

  bool operator==(const MonthComponents&) const = default;
};

// A difference of the month's amount goes to the principal; the interest bears only what the principal
// cannot.
MonthComponents WithDifference(MonthComponents month, double difference);
// The same on the stored month that the condition ("Where ...") names, whose components are there.
void StoreDifference(Session& session, const Statement& condition, double difference);

}  // namespace ktl
