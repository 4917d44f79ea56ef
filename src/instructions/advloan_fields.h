#pragma once

#include <functional>

#include "instructions/advloan_data.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// What the fields of an instruction do, on every screen that has them.

// When the date is left: corrected; its month becomes the one to recover from while that is empty.
void LeaveDate(TextBox& date, TextBox& recoverFrom);
// When the amount is left: shown with two places, and the flat interest of the name filled in.
void LeaveAmount(const Session& session, const NameRules& rules, TextBox& amount, TextBox& interest);
// When a percentage is left: shown with two places. 0 stays, only an empty one is asked for.
void LeavePercent(TextBox& percent);
// Hands the amount to a calculator and takes its answer, unless an interest is typed already.
void CalculateInterestBy(Session& session, const std::function<void()>& calculator, const TextBox& amount,
                         TextBox& interest);
void OpenInterestCalculator(Session& session);

}  // namespace ktl
