#pragma once

#include <string>

namespace ktl {

inline constexpr const char* kAmountTooLarge = "Amount should be less than 9,99,99,99,999.99";

// What stands against an amount as typed into a cell, "" when nothing does; an empty text is 0.
std::string RefusedAmount(const std::string& text);

}  // namespace ktl
