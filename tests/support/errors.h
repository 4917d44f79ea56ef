#pragma once

#include <string>

#include "runtime/errors.h"

namespace ktl {

// The number of the run-time error that an act ends with; 0 when it ends well.
template <typename Act>
long ErrorOf(const Act& act) {
  try {
    act();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

// What it says; "" when the act ends well.
template <typename Act>
std::string DescriptionOf(const Act& act) {
  try {
    act();
  } catch (const RuntimeError& error) {
    return error.description();
  }
  return "";
}

}  // namespace ktl
