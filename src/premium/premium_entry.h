#pragma once

#include <optional>
#include <string>

#include "frame/refusal.h"
#include "instructions/premium_row.h"
#include "instructions/premium_schedule.h"

namespace ktl {

struct Session;

// What stands in the entry form, but for the serial number.
struct TypedPremium {
  std::string name, number, startMonth, endMonth, amount, institution, remarks;
  PremiumPeriod period = PremiumPeriod::Monthly;
  TypedShares shares;

  bool operator==(const TypedPremium&) const = default;
};

// A premium or an incentive as it is to be given. What is typed is read here and nowhere else.
struct PremiumEntry {
  InstructionKey key;               // the serial number is 0 when none was typed
  bool isNew = true;                // as it was shown: a number that was taken meanwhile does not end that
  std::string caption;              // the company's word for the type
  std::optional<long> institution;  // INSTID; nothing when the text matches no row of the list
  TypedPremium typed;

  PremiumRow row;     // texts trimmed; a month that is none is 0
  double amount = 0;  // of each month that is due, rupees

  void ReadTyped(TypedPremium texts);
  PremiumTerms Terms() const { return {amount, row.firstMonth, row.lastMonth, typed.period}; }
};

enum class PremiumField {
  None,
  EmployeeName,
  Serial,
  Name,
  Number,
  StartMonth,
  EndMonth,
  PfPercent,
  EsiPercent,
  Amount,
  Institution,
  Remarks
};
using PremiumRefusal = Refusal<PremiumField>;

// All checks before a save, in their fixed order. Half-way the tax flags of the months are marked: they stay
// marked when a later check refuses. Nothing else is changed.
std::optional<PremiumRefusal> ValidatePremium(Session& session, const PremiumEntry& entry);

}  // namespace ktl
