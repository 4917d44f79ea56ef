#pragma once

#include "instructions/instruction_type.h"

namespace ktl {

// What the entry of premiums does differently from type to type.
struct PremiumFacts {
  InstructionType type;
  bool hasPeriod;     // else it is due every month
  bool mayAllot;      // to many employees at once
  bool totalsByWord;  // its total stands under the company's word, else under "Total Premium"
  int portCode;       // of the tax flags that a save or a delete marks
};

// Throws RuntimeError 5 for a type that is entered elsewhere.
const PremiumFacts& PremiumFactsOf(InstructionType type);

}  // namespace ktl
