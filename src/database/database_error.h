#pragma once

#include "runtime/errors.h"

namespace ktl {

// Number of a failure that the driver reports without one of its own.
inline constexpr long kGenericDatabaseError = -2147467259;
inline constexpr long kStatementError = -2147217900;  // a text that cannot be read or prepared
inline constexpr long kIntegrityError = -2147217873;  // a key or a check is violated
inline constexpr long kNoSuchTableError = -2147217865;
inline constexpr long kRowGoneError = -2147217864;  // the row to update is no longer there
inline constexpr long kNoCurrentRowError = 3021;
inline constexpr long kNoSuchFieldError = 3265;
inline constexpr long kWrongTypeError = 3421;  // a value that does not fit its field

// What kRowGoneError tells.
inline constexpr const char* kRowGoneText =
    "Row cannot be located for updating. Some values may have been changed since it was last read.";

// What is told when another one holds what is to be written for longer than the time-out.
inline constexpr const char* kLockedText = "The database is locked by another workstation. Please try again.";

// The only exception of the data layer.
class DatabaseError : public RuntimeError {
 public:
  explicit DatabaseError(std::string description, long number = kGenericDatabaseError)
      : RuntimeError(number, std::move(description)) {}
};

}  // namespace ktl
