#include "premium/premium_type.h"

#include "runtime/errors.h"

namespace ktl {

namespace {

using enum InstructionType;

// A name's own master marks the same flags under the other code.
constexpr PremiumFacts kFacts[] = {
    {Insurance, true, false, false, 13},
    {Sss, false, false, true, 13},
    {GroupInsurance, true, true, false, 13},
    {Incentive, true, true, true, 12},
};

}  // namespace

const PremiumFacts& PremiumFactsOf(InstructionType type) {
  for (const PremiumFacts& facts : kFacts)
    if (facts.type == type) return facts;
  throw RuntimeError::InvalidProcedureCall();
}

}  // namespace ktl
