#pragma once

#include <functional>
#include <string>

#include "runtime/numbers.h"

namespace ktl {

// The column of a list that shows an amount of its rows with two places, 0.00 too.
template <typename Row>
std::function<std::string(const Row&)> TwoPlaces(double Row::*amount) {
  return [amount](const Row& row) { return FormatNumber(row.*amount, "0.00"); };
}

}  // namespace ktl
