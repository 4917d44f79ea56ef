#include "common/typed_amount.h"

#include <optional>

#include "common/amounts.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

std::string RefusedAmount(const std::string& text) {
  if (Trim(text).empty()) return "";
  const std::optional<double> amount = ParseNumber(Trim(text));
  if (!amount || *amount < 0) return "Specify proper amount.";
  return *amount > kAmountLimit ? kAmountTooLarge : "";
}

}  // namespace ktl
