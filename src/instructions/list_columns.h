#pragma once

#include <functional>
#include <string>

#include "common/amounts.h"
#include "screen/controls.h"

namespace ktl {

inline constexpr Colour kAboutToGoColour = 0xFFE0E0;  // of a row while its deletion is asked about

// The column of a list that shows an amount of its rows; nothing for one that is not there.
template <typename Row, typename Number>
std::function<std::string(const Row&)> Amount(Number Row::*amount) {
  return [amount](const Row& row) { return ShownAmount(row.*amount); };
}

}  // namespace ktl
