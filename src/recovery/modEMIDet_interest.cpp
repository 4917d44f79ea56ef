// The editor's panel that computes the interest of a reducing instruction into a range of months.
#include <fmt/format.h>

#include <algorithm>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/saved_box.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "recovery/adjustment_write.h"
#include "recovery/modEMIDet.h"
#include "recovery/reducing_interest.h"

namespace ktl {

void modEMIDet::chkIntRateRedBal_Click() { fmeIntRedBal.visible = chkIntRateRedBal.Value(); }

void modEMIDet::cmdIntClose_Click() { chkIntRateRedBal.SetValue(false); }

void modEMIDet::cmdIntNew_Click() {
  for (TextBox* box : {&txtInt, &txtIntFrom, &txtIntTo}) box->SetText("");
  SetFocus(txtInt);
}

void modEMIDet::txtIntFrom_LostFocus() {
  txtIntFrom.SetText(FnStrCorrectMonth(txtIntFrom.Text()));
  if (!txtIntFrom.Text().empty() && !months_.empty())
    txtIntTo.SetText(FnStrFormatMonthYear(months_.back().monthYear));
}

void modEMIDet::txtIntTo_LostFocus() { txtIntTo.SetText(FnStrCorrectMonth(txtIntTo.Text())); }

bool modEMIDet::CheckInterestPanel(const MonthRangeText& range) {
  const auto refuse = [this](const char* text, TextBox& field) {
    session_.Inform(text);
    SetFocus(field);
    return false;
  };
  if (const auto refusal = CheckMonthRange(session_, range)) {
    return refuse(refusal->text.c_str(), refusal->field == EmiField::To ? txtIntTo : txtIntFrom);
  }
  const double rate = clsGenCmn::FnDblTrimVal(txtInt.Text());
  if (rate == 0) return refuse("Enter Interest Rate.", txtInt);
  if (rate < 0) return refuse("Specify proper Interest.", txtInt);
  if (const auto refusal = CheckMonthLocks(session_, range)) {
    Refuse(*refusal);
    return false;
  }
  if (rate >= 100) {
    txtInt.SetText("");
    return refuse("Specify proper Interest.", txtInt);
  }
  const auto empty = [this](TextBox& field) {
    field.SetText("");
    SetFocus(field);
    return false;
  };
  const auto inRange = [&range](const ScheduleMonth& month) {
    return month.monthYear >= range.FromMonth() && month.monthYear <= range.ToMonth();
  };
  if (!months_.empty() && range.FromMonth() < months_.front().monthYear) return empty(txtIntFrom);
  if (!months_.empty() && range.ToMonth() > months_.back().monthYear) return empty(txtIntTo);
  if (std::ranges::none_of(months_, inRange)) return refuse("Specify proper EMI months", txtIntFrom);
  return true;
}

void modEMIDet::cmdIntCalculate_Click() {
  const MonthRangeText range{txtIntFrom.Text(), txtIntTo.Text()};
  if (!CheckInterestPanel(range)) return;
  WriteInterests(range);
  RefreshParent();
  FillEmiGrid();
  ShowSaved(session_);
  for (TextBox* box : {&txtInt, &txtIntFrom, &txtIntTo}) box->SetText("");
}

// The balance falls by the principal of every month; only those of the range are written.
void modEMIDet::WriteInterests(const MonthRangeText& range) {
  InterestTerms terms = ReadInterestTerms(session_, key_);
  terms.rate = clsGenCmn::FnDblTrimVal(txtInt.Text()) / 100;
  terms.daysBasis = chkCalculationOn.Value();
  terms.exactDates = chkEffDate.Value();
  std::vector<BalanceMonth> balances;
  for (const ScheduleMonth& month : months_)
    balances.push_back({month.monthYear, AmountOf(month, Component::Principal)});
  const std::vector<double> interests = ReducingInterest(balances, terms);
  for (std::size_t row = 0; row < months_.size(); ++row) {
    const long month = months_[row].monthYear;
    if (month < range.FromMonth() || month > range.ToMonth()) continue;
    WriteMonthInterest(session_, key_, month, interests[row]);
    RaiseEditMode(session_, key_.employee, OneMonth(month), AttendanceWording::EmployeeFirst);
  }
}

}  // namespace ktl
