#pragma once

#include <string>
#include <string_view>

#include "instructions/instruction_parent.h"

namespace ktl {

struct Session;

// The audit line of a change to the instruction's months or receipts: the company's word for the type, what
// was done (" EMI's Deleted") and what is told behind type and name. Nothing is asked while the audit is off.
void AuditChange(Session& session, const InstructionKey& key, const std::string& caption,
                 std::string_view deed, std::string_view detail);

// "::Principle Amount = 100.00:Interest Amount = 5.00:EMI Amount = 105.00"
std::string AuditedComponents(std::string_view principal, std::string_view interest, std::string_view total);
// "1,05,000.00": how audit texts show the sum of both.
std::string AuditedSum(double amount);

}  // namespace ktl
