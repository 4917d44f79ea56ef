#pragma once

#include <optional>

#include "runtime/date.h"

namespace ktl {

struct Session;

// When an employee joined and left; both days are in service.
struct Service {
  std::optional<Date> joined, left;

  bool Holds(const Date& day) const { return (!joined || *joined <= day) && (!left || *left >= day); }
};
Service ReadService(Session& session, long employee);

}  // namespace ktl
