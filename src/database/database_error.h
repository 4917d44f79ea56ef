#pragma once

#include "runtime/errors.h"

namespace ktl {

// Number of a failure that the driver reports without one of its own.
inline constexpr long kGenericDatabaseError = -2147467259;

// The only exception of the data layer.
class DatabaseError : public RuntimeError {
 public:
  explicit DatabaseError(std::string description, long number = kGenericDatabaseError)
      : RuntimeError(number, std::move(description)) {}
};

}  // namespace ktl
