// Deleting a month in the editor and what becomes of its amount.
#include <fmt/format.h>

#include <algorithm>

#include "common/month_year.h"
#include "common/titles.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "recovery/adjustment_write.h"
#include "recovery/modEMIDet.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr Colour kDeleteColour = 0xFFE0E0;

std::string AdjustmentWords(Answer answer) {
  switch (answer) {
    case Answer::Yes:
      return "Adjusted the EMI Amount for Future Months";
    case Answer::No:
      return "Created New Month for Recovery";
    default:
      return "Deleted with No Adjustments";
  }
}

}  // namespace

void modEMIDet::cmdDelete_Click() {
  if (FnBlnPermitted(session_, cmdDelete)) return;
  const std::optional<std::size_t> row = RowToDelete();
  if (!row) return;
  const ScheduleMonth month = months_[*row];
  fpgEMIDetail.PaintRow(*row, kDeleteColour);
  const bool confirmed = MayDelete(month);
  std::optional<Answer> answer;
  if (confirmed && IsAdvanceOrLoan()) {
    answer =
        session_.desk.MsgBox({"Do you want to Adjust the EMI Amount?\r\n"
                              "Click on 'Yes' to Adjust the EMI Amount for Future Months\r\n"
                              "Click on 'No' to Create New Month for Recovery\r\n"
                              "Click 'Cancel' to Delete with No Adjustments",
                              Buttons::YesNoCancel, Icon::Question, Answer::Cancel, session_.title});
  }
  fpgEMIDetail.PaintRow(*row, kWhite);
  if (!confirmed) return;
  lngActiveRow = *row;
  DeleteMonth(month, answer);
}

std::optional<std::size_t> modEMIDet::RowToDelete() {
  if (months_.empty()) {
    session_.Inform("No records to delete.");
    return std::nullopt;
  }
  const auto picked = std::ranges::find(months_, lngCounter, &ScheduleMonth::counter);
  if (lngCounter == 0 || picked == months_.end()) {
    session_.Inform("Select record to delete.");
    return std::nullopt;
  }
  return static_cast<std::size_t>(picked - months_.begin());
}

bool modEMIDet::MayDelete(const ScheduleMonth& month) {
  if (IsMonthLocked(session_, month.monthYear)) {
    session_.desk.Warn("Month/Year locked. Cannot delete.", session_.title);
    return false;
  }
  if (IsEmployeeLocked(session_, key_.employee, month.monthYear, kNoLastMonth)) {
    session_.desk.Inform("Employee has been locked. Cannot Delete.", kDeniedTitle);
    return false;
  }
  return session_.desk.Confirm(fmt::format("Do you want to delete selected {}{}", strTypeDesc,
                                           IsAdvanceOrLoan() ? " EMI?" : " payment?"),
                               session_.title);
}

void modEMIDet::DeleteMonth(const ScheduleMonth& month, std::optional<Answer> answer) {
  session_.Cn.Execute(fmt::format(
      "Delete From INS_EMIDETAIL Where EMPID = {} And SERIALNO = {} And MONTHYEAR = {} And SITYPE = "
      "{} And COUNTER = {}",
      key_.employee, key_.serial, month.monthYear, key_.type, month.counter));
  RaiseEditMode(session_, key_.employee, OneMonth(month.monthYear), AttendanceWording::EmployeeFirst);
  AuditDeleted(month, answer);
  if (answer) {
    RefreshParent();
    AdjustDeleted(*answer, month);
  } else {
    parent_.RefreshEMI();
  }
  FillEmiGrid();
  ClearEmiFields();
  blnNewRow = false;
}

void modEMIDet::AdjustDeleted(Answer answer, const ScheduleMonth& deleted) {
  const double amount = AmountOf(deleted, Component::Amount);
  const double principal = AmountOf(deleted, Component::Principal);
  const double interest = AmountOf(deleted, Component::Interest);
  using Mode = EditorDifference::Mode;
  if (answer == Answer::Cancel) return;
  if (answer == Answer::Yes && reducing_) {
    AdjustFuturePrincipal(session_, parent_, {Mode::Delete, lngActiveRow, principal});
    AdjustFutureInterest(session_, parent_, {Mode::Delete, lngActiveRow, interest});
  } else if (answer == Answer::Yes) {
    AdjustFutureMonths(session_, parent_, {Mode::Delete, lngActiveRow, amount});
  } else if (reducing_) {
    if (principal + interest != 0) CreateRecoveryMonthRed(session_, parent_, principal, interest);
  } else if (amount != 0) {
    CreateRecoveryMonth(session_, parent_, amount);
  }
  RefreshParent();
}

void modEMIDet::AuditDeleted(const ScheduleMonth& month, std::optional<Answer> answer) {
  const auto shown = [&month](Component component) {
    return FormatNumber(AmountOf(month, component), "0.00");
  };
  std::string detail = ":Month/Year = " + FnStrFormatMonthYear(month.monthYear);
  if (reducing_) {
    detail +=
        fmt::format("::Principle Amount = {}:Interest Amount = {}:EMI Amount = {}",
                    shown(Component::Principal), shown(Component::Interest),
                    FormatNumber(AmountOf(month, Component::Principal) + AmountOf(month, Component::Interest),
                                 "#,##,###.00"));
  } else {
    detail += "::EMI Amount = " + shown(Component::Amount);
    if (answer) detail += ":EMI Adjustment = " + AdjustmentWords(*answer);
  }
  WriteAudit(" EMI's Deleted", detail);
}

}  // namespace ktl
