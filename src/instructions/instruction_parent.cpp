#include "instructions/instruction_parent.h"

#include "common/amounts.h"
#include "runtime/numbers.h"

namespace ktl {

std::string AmountWords(const InstructionTotals& totals) {
  const auto shown = [](double amount) {
    return clsGenCmn::FnStrConvertToCommaNumber(NumberText(amount), 2);
  };
  return shown(totals.amount) + ", due " + shown(totals.Due());
}

}  // namespace ktl
