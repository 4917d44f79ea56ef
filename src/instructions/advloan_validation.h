#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "frame/refusal.h"
#include "instructions/advloan_entry.h"

namespace ktl {

struct Session;

enum class EntryField {
  None,
  EmployeeName,
  Name,
  Institution,
  Account,
  Serial,
  Date,
  Amount,
  Interest,
  Instalment,
  Count,
  RecoverFrom,
  Remarks
};

using EntryRefusal = Refusal<EntryField>;

// A question between the checks; true goes on.
using AskToContinue = std::function<bool(const std::string& text, Icon icon, Answer preset)>;

// All checks before a save, in their fixed order; nothing when the entry may be written. Nothing is changed.
std::optional<EntryRefusal> ValidateAdvLoan(Session& session, const AdvLoanEntry& entry,
                                            const AskToContinue& ask);

// The same for an allotment to many: fewer and partly other checks, in an order of their own. The entry's
// employee and serial number do not count.
std::optional<EntryRefusal> ValidateAllotment(Session& session, const AdvLoanEntry& entry,
                                              const std::vector<long>& employees, const AskToContinue& ask);

}  // namespace ktl
