#pragma once

#include <string>
#include <string_view>

namespace ktl {

struct Session;

// SITYPE, the kind of an instruction. 6 is not used.
enum class InstructionType : int {
  None = 0,  // of screens that are opened without a type; has no facts
  Advance = 1,
  Loan = 2,
  Insurance = 3,
  Sss = 4,
  GroupInsurance = 5,
  Incentive = 7,
};

}  // namespace ktl
