#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/refusal.h"
#include "instructions/allotment.h"
#include "instructions/premium_row.h"
#include "instructions/premium_schedule.h"

namespace ktl {

struct Session;

// What stands in the fields of a group insurance or an incentive that is given to many.
struct TypedPremiumAllotment {
  std::string name, number, startMonth, endMonth, amount, remarks;
  TypedShares shares;
};

struct PremiumAllotment {
  InstructionType type = InstructionType::GroupInsurance;
  std::string caption;  // the company's word for the type
  std::optional<long> institution;
  std::string institutionName;
  bool amountByFormula = false;
  PremiumPeriod period = PremiumPeriod::Monthly;
  TypedPremiumAllotment typed;

  // Of the texts, trimmed; a text that is no number is 0, one that is no month too.
  std::string name, number, remarks;
  long firstMonth = 0;
  long lastMonth = 0;
  double amount = 0;
  FundShare pf, esi;  // of who belongs to the fund
  bool pt = false;

  void ReadTyped(TypedPremiumAllotment texts);
};

enum class PremiumAllotField {
  None,
  Name,
  Number,
  StartMonth,
  EndMonth,
  Amount,
  PfPercent,
  EsiPercent,
  Institution,
  Remarks
};
using PremiumAllotRefusal = Refusal<PremiumAllotField>;

// All checks but the two behind: who is in service, then the institution.
std::optional<PremiumAllotRefusal> ValidatePremiumAllotment(Session& session, const PremiumAllotment& premium,
                                                            const std::vector<long>& employees);
std::optional<PremiumAllotRefusal> CheckPremiumInstitution(const PremiumAllotment& premium);

// For one of them, an amount above 0: row, schedule, flags of salary and tax, audit.
void WriteAllottedPremium(Session& session, const PremiumAllotment& premium, long employee, double amount);

}  // namespace ktl
