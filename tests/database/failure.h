#pragma once

#include "database/connection.h"

namespace ktl::test {

// The error that the deed ends with; number 0 and "done" when it ends well.
template <class Deed>
DatabaseError FailureOf(Deed deed) {
  try {
    deed();
  } catch (const DatabaseError& error) {
    return error;
  }
  return DatabaseError("done", 0);
}

}  // namespace ktl::test
