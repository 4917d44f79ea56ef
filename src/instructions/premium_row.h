#pragma once

#include <optional>
#include <string>

#include "instructions/instruction_parent.h"

namespace ktl {

struct Session;

// How far an incentive counts for a fund: for PF or for ESI.
struct FundShare {
  bool counts = false;
  double percent = 0;
};

// What an incentive of an employee can count for.
struct FundSwitches {
  bool pf = false;
  bool esi = false;
  bool pt = false;
};

// As they stand in the fields.
struct TypedShares {
  bool pf = false;
  std::string pfPercent;
  bool esi = false;
  std::string esiPercent;
  bool pt = false;

  bool operator==(const TypedShares&) const = default;
};

// A row of INS_OTHER: an insurance, SSS, group insurance or periodic incentive of an employee.
struct PremiumRow {
  std::string name;
  std::string number;  // of the policy; an incentive has none
  long firstMonth = 0;
  long lastMonth = 0;
  std::string remarks;
  // Of incentives only. A share that is not there is not written.
  std::optional<FundShare> pf, esi;
  bool pt = false;
};

// Nothing when there is no such instruction.
std::optional<PremiumRow> ReadPremium(Session& session, const InstructionKey& key);
// Adds the row or writes over it; true for a new one.
bool StorePremium(Session& session, const InstructionKey& key, const PremiumRow& premium);

}  // namespace ktl
