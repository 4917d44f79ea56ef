#pragma once

#include "database/database_error.h"

namespace ktl {

// What a person was shown is no longer what the tables hold: another workstation was faster.
class ChangedMeanwhile final : public DatabaseError {
 public:
  ChangedMeanwhile()
      : DatabaseError(
            "Row cannot be located for updating. Some values may have been changed since it was last read.",
            kRowGoneError) {}
};

}  // namespace ktl
