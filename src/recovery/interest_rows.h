#pragma once

#include <string>
#include <vector>

#include "instructions/instruction_parent.h"

namespace ktl {

struct Session;

// One month of the interest editor, rupees.
struct InterestRow {
  long monthYear = 0;
  double actualPrincipal = 0;
  double actualInterest = 0;
  double modifiedPrincipal = 0;
  double modifiedInterest = 0;

  double ActualTotal() const { return actualPrincipal + actualInterest; }
  double ModifiedTotal() const { return modifiedPrincipal + modifiedInterest; }
  bool operator==(const InterestRow&) const = default;
};

// The months of the instruction under that name, in their order.
std::vector<InterestRow> ReadInterestRows(Session& session, const InstructionKey& key,
                                          const std::string& name);

// Writes every row and flags its month, then the total interest of the instruction. The audit text of the
// changed rows, "" when nothing was changed or the audit is off.
std::string WriteInterestRows(Session& session, const InstructionKey& key, const std::string& name,
                              const std::vector<InterestRow>& rows);

}  // namespace ktl
