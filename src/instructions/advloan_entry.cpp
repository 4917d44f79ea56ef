#include "instructions/advloan_entry.h"

#include <cmath>

#include "common/amounts.h"
#include "common/month_year.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

long TypedSerial(const std::string& text) {
  constexpr double kWholeNumbers = 9007199254740992;  // doubles tell the whole numbers below it apart
  const double number = clsGenCmn::FnDblTrimVal(text);
  return std::trunc(number) == number && std::fabs(number) < kWholeNumbers ? static_cast<long>(number) : 0;
}

void AdvLoanEntry::ReadTyped(TypedAdvLoan texts) {
  const auto number = clsGenCmn::FnDblTrimVal;
  serial = TypedSerial(texts.serial);
  name = Trim(texts.name);
  account = Trim(texts.account);
  remarks = Trim(texts.remarks);
  date = ParseDate(texts.date);
  amount = number(texts.amount);
  // The flat interest of a name is shown with all its places, and stored with two.
  interest = RoundByPattern(number(texts.interest), "0.00");
  instalment = number(texts.instalment);
  count = Trim(texts.count).empty() ? std::nullopt : std::optional(number(texts.count));
  firstMonth = FnLngMonthYear(FnStrCorrectMonth(texts.recoverFrom));
  typed = std::move(texts);
}

ScheduleTerms AdvLoanEntry::Terms(bool advancedManagement) const {
  ScheduleTerms terms{.total = Total(), .firstMonth = firstMonth};
  if (lumpSum) {
    terms.instalment = instalment;
  } else {
    terms.count = count.value_or(0);
    terms.rounding = rounding;
  }
  if (advancedManagement && rules.REDUCINGBALYN) terms.reducingRate = rules.INTRRATE;
  return terms;
}

}  // namespace ktl
