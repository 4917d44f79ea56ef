#pragma once

#include <functional>
#include <map>
#include <optional>

#include "instructions/advloan_validation.h"
#include "instructions/recovery_frame.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// What the fields of an instruction do, on every screen that has them.

// The institution that is chosen; nothing when the text matches no row of the list.
std::optional<long> ChosenInstitution(const ComboBox& institution);

// What an advance or a loan is typed into, besides its serial number.
struct AdvLoanFields {
  ComboBox& name;
  ComboBox& institution;
  TextBox& account;
  TextBox& date;
  TextBox& amount;
  TextBox& interest;
  TextBox& remarks;
  RecoveryFrame& recovery;

  void ReadInto(AdvLoanEntry& entry, std::string serial = "") const;
  // Where the focus goes for a refusal.
  std::map<EntryField, Control*> ByRefusal() const;
};

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
