#pragma once

#include <functional>
#include <optional>
#include <string>

#include "common/amounts.h"

namespace ktl {

// The text of a list's column that shows an amount of the row: two decimals, nothing for null.
template <typename Row>
std::function<std::string(const Row&)> Amount(std::optional<double> Row::*amount) {
  return [amount](const Row& row) { return ShownAmount(row.*amount); };
}

}  // namespace ktl
