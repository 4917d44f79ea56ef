#include "recovery/modEMIDet.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/handler_guard.h"
#include "frame/modExternal.h"
#include "frame/number_fields.h"
#include "frame/pickers.h"
#include "frame/rights.h"
#include "frame/saved_box.h"
#include "frame/session.h"
#include "frame/writing_buttons.h"
#include "frame/writing_turn.h"
#include "instructions/components.h"
#include "instructions/list_columns.h"
#include "instructions/shown_rows.h"
#include "instructions/type_rights.h"
#include "recovery/emi_months.h"
#include "recovery/working.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr const char* kMonthFormat = "Jan/2005(mmm/yyyy)";

}  // namespace

modEMIDet::modEMIDet(Session& session, InstructionParent& parent)
    : Screen("modEMIDet"),
      session_(session),
      parent_(parent),
      key_(parent.Key()),
      reducing_(parent.ComponentsApart()) {
  caption = "EMI Details";
  fmeIntRedBal.Hold({lblInt, txtInt, lblIntFrom, txtIntFrom, lblIntTo, txtIntTo, chkCalculationOn, chkEffDate,
                     cmdIntCalculate, cmdIntNew, cmdIntClose});
  fmeIntRedBal.visible = false;
  TakeAmounts({&txtAmount, &txtInterest, &txtInt});
  for (TextBox* box : {&txtFromMonth, &txtToMonth, &txtIntFrom, &txtIntTo}) {
    box->toolTip = kMonthFormat;
    box->onKeyPress = clsGenCmn::DateKeyWithAlpha;
    AskForMonth(session_, *box);
  }
  ConnectHandlers();
}

void modEMIDet::ConnectHandlers() {
  const HandlerGuard on(session_, *this, ErrorStyle::DescriptionFirst);
  fpgEMIDetail.onRowClick = [this](std::size_t row, std::size_t) { fpgEMIDetail_Click(row); };
  txtFromMonth.onLeave = on(&modEMIDet::txtFromMonth_LostFocus);
  txtToMonth.onLeave = on(&modEMIDet::txtToMonth_LostFocus);
  for (TextBox* box : {&txtAmount, &txtInterest}) {
    box->onLeave = on([box] {
      const double amount = clsGenCmn::FnDblTrimVal(box->Text());
      if (amount != 0 && amount <= kAmountLimit)  // more is refused by a save, as it was typed
        box->SetText(clsGenCmn::FnStrConvertToCommaNumber(box->Text(), 2));
    });
  }
  cmdNew.onClick = on(&modEMIDet::cmdNew_Click);
  cmdSave.onClick = on(&modEMIDet::cmdSave_Click);
  cmdDelete.onClick = on(&modEMIDet::cmdDelete_Click);
  cmdInstitution.onClick = on(&modEMIDet::cmdInstitution_Click);
  cmdClose.onClick = [this] { Unload(); };
  chkIntRateRedBal.onClick = [this] { chkIntRateRedBal_Click(); };
  txtIntFrom.onLeave = on(&modEMIDet::txtIntFrom_LostFocus);
  txtIntTo.onLeave = on(&modEMIDet::txtIntTo_LostFocus);
  cmdIntCalculate.onClick = on(&modEMIDet::cmdIntCalculate_Click);
  cmdIntNew.onClick = on(&modEMIDet::cmdIntNew_Click);
  cmdIntClose.onClick = [this] { cmdIntClose_Click(); };
}

bool modEMIDet::IsAdvanceOrLoan() const { return ktl::IsAdvanceOrLoan(key_.type); }

void modEMIDet::Form_Load() {
  strTypeDesc = InstructionCaption(session_, key_.type);
  if (!IsAdvanceOrLoan()) caption = "Payment Detail";
  SetColumns();
  FillInstitutions();
  FillEmiGrid();
  lngCounter = 0;
  ApplyTypeRights(session_, *this, key_.type);
}

void modEMIDet::SetColumns() {
  using Month = ScheduleMonth;
  const bool apart = reducing_ || session_.SepPiYN;
  const bool marked = IsAdvanceOrLoan();
  months_.SetColumns({
      {{"Counter", CellType::Number, 60, true},
       [](const Month& month) { return std::to_string(month.counter); }},
      {{"Month/Year"}, [](const Month& month) { return FnStrFormatMonthYear(month.monthYear); }},
      {{"Actual Principle Amount", CellType::Number, 150, !apart}, Amount(&Month::ACTPRNAMT)},
      {{"Actual Interest Amount", CellType::Number, 150, !apart}, Amount(&Month::ACTINTAMT)},
      {{"Actual Amount", CellType::Number, 120}, Amount(&Month::EMIAMT)},
      {{"Modified Principle Amount", CellType::Number, 160, !apart}, Amount(&Month::MDFPRNAMT)},
      {{"Modified Interest Amount", CellType::Number, 150, !apart}, Amount(&Month::MDFINTAMT)},
      {{"Modified Amount", CellType::Number, 125}, Amount(&Month::MDFYAMT)},
      {{"Institution", CellType::Text, 180, !HasInstitution(key_.type)}, &Month::institution},
      {{"Remarks", CellType::Text, 200}, &Month::remarks},
      {{"EMI Rec", CellType::Number, 60, true},
       [marked](const Month& month) { return marked ? std::to_string(month.IsRecovered()) : ""; }},
  });
  fpgEMIDetail.summed = {kActualPrincipal,   kActualInterest,   kActualAmount,
                         kModifiedPrincipal, kModifiedInterest, kModifiedAmount};
}

Subject modEMIDet::Subject() const { return parent_.Subject(); }

void modEMIDet::Form_Activate() {
  ShowForType();
  EnableByRights();
}

void modEMIDet::ShowForType() {
  lblInstitution.visible = cmbInstitution.visible = cmdInstitution.visible = HasInstitution(key_.type);
  lblInterest.visible = txtInterest.visible = IsAdvanceOrLoan();
  txtInterest.enabled = reducing_;
  if (IsAdvanceOrLoan() && reducing_) {
    lblAmount.caption = "Modified Principle";
  } else if (IsAdvanceOrLoan() && !session_.SepPiYN) {
    lblAmount.caption = "Amount";
  }
  chkIntRateRedBal.visible = IsAdvanceOrLoan() && reducing_;
}

// Whoever may not save here may not compute interest into the months either.
void modEMIDet::EnableByRights() { EnableWriting(session_, {&cmdSave, &cmdDelete, &cmdIntCalculate}); }

void modEMIDet::FillEmiGrid() {
  shown_ = InstructionAndSchedule(session_, key_);
  std::vector<ScheduleMonth> months = ReadEmiMonths(session_, parent_);
  if (reducing_) CountComponents(session_, key_, months);
  months_.Show(std::move(months));
}

void modEMIDet::FillInstitutions() { cmbInstitution.SetRows(ReadInstitutionRows(session_, key_.type)); }

void modEMIDet::fpgEMIDetail_Click(std::size_t row) { ShowEmiRow(row); }

void modEMIDet::ShowEmiRow(std::size_t lngRow) {
  const ScheduleMonth* month = months_.At(lngRow);
  if (month == nullptr) return;
  picked_ = *month;
  lngCounter = picked_.counter;
  txtFromMonth.SetText(FnStrFormatMonthYear(picked_.monthYear));
  txtToMonth.SetText(FnStrFormatMonthYear(picked_.monthYear));
  txtAmount.tag = ShownAmount(reducing_ ? picked_.MDFPRNAMT : picked_.MDFYAMT);
  txtAmount.SetText(txtAmount.tag);
  txtInterest.tag = reducing_ ? ShownAmount(picked_.MDFINTAMT) : "";
  txtInterest.SetText(txtInterest.tag);
  cmbInstitution.SetText(picked_.institution);
  txtRemarks.SetText(picked_.remarks);
  blnNewRow = false;
}

void modEMIDet::ClearEmiFields() {
  for (TextBox* box : {&txtFromMonth, &txtToMonth, &txtAmount, &txtInterest, &txtRemarks}) {
    box->SetText("");
    box->tag.clear();
  }
  cmbInstitution.SetText("");
  lngCounter = 0;
  fpgEMIDetail.activeRow = kNoRow;  // nothing is picked
}

void modEMIDet::cmdNew_Click() { NewEmiRow(); }

void modEMIDet::NewEmiRow() {
  ClearEmiFields();
  const std::optional<LastMonth> last = ReadLastMonth(session_, key_);
  lngCounter = last ? last->counter + 1 : 1;
  if (last) {
    txtFromMonth.SetText(FnStrFormatMonthYear(last->monthYear + 1));
  } else if (months_.Rows().empty()) {
    txtFromMonth.SetText(FormatDate(session_.machine.clock.Now(), "MMM/YYYY"));
  }
  txtToMonth.SetText(txtFromMonth.Text());
  SetFocus(txtToMonth);
  blnNewRow = true;
}

void modEMIDet::txtFromMonth_LostFocus() { txtFromMonth.SetText(FnStrCorrectMonth(txtFromMonth.Text())); }

void modEMIDet::txtToMonth_LostFocus() { txtToMonth.SetText(FnStrCorrectMonth(txtToMonth.Text())); }

void modEMIDet::cmdInstitution_Click() {
  if (FnBlnPermitted(session_, cmdInstitution)) return;
  OpenInstitutionMaster(session_);
  FillInstitutions();
}

EmiEntry modEMIDet::Entry() const {
  return {.lngCounter = lngCounter,
          .months = {txtFromMonth.Text(), txtToMonth.Text()},
          .amount = {txtAmount.Text(), txtAmount.tag},
          .interest = reducing_ ? EditedAmount(txtInterest.Text(), txtInterest.tag) : EditedAmount(),
          .institution = static_cast<long>(Val(cmbInstitution.BoundText())),
          .remarks = txtRemarks.Text()};
}

void modEMIDet::cmdSave_Click() {
  if (FnBlnPermitted(session_, cmdSave)) return;
  const Working working(session_, cmdClose);
  lngActiveRow = fpgEMIDetail.activeRow;
  SaveEmiRow();
}

bool modEMIDet::SaveEmiRow() {
  const EmiEntry entry = Entry();
  if (const auto refusal = CheckEmiEntry(session_, key_, entry))
    return Refuse(session_, *this, *refusal, fields_);
  cmdClose.enabled = false;
  const std::optional<Answer> answer = AskAdjustment(entry);
  if (answer != Answer::Yes && !MayRecoverMore(entry)) {
    SetFocus(txtAmount);
    return false;
  }
  if (!SaveInTurn(entry, [&] { WriteEntry(entry, answer); })) return false;
  ShowSaved(session_);
  ClearEmiFields();
  SetFocus(cmdNew);
  blnNewRow = false;
  return true;
}

// A month that nobody has made so far is added to whatever the schedule has become; all else rests on the
// months shown.
bool modEMIDet::SaveInTurn(const EmiEntry& entry, const std::function<void()>& write) {
  const bool onlyAdds = blnNewRow && std::ranges::none_of(months_.Rows(), [&](const ScheduleMonth& month) {
                          return entry.months.Holds(month.monthYear);
                        });
  if (onlyAdds) {
    return WriteInTurn(
        session_, [&] { return MonthsTaken(session_, key_, entry.months.from, entry.months.to); },
        kNothingThere, write, [this] { ShowAnew(); });
  }
  return WriteInTurn(
      session_, [this] { return InstructionAndSchedule(session_, key_); }, shown_, write,
      [this] { ShowAnew(); });
}

void modEMIDet::ShowAnew() {
  RefreshParent();
  FillEmiGrid();
  ClearEmiFields();
  blnNewRow = false;
}

void modEMIDet::WriteEntry(const EmiEntry& entry, std::optional<Answer> answer) {
  if (reducing_) StoreComponents(session_, key_);
  const bool blnRowAdded = WriteEmiMonths(session_, parent_, entry);
  if (IsAdvanceOrLoan()) {
    RefreshParent();
    // Months that were added are no change of the others, whatever was answered.
    if (!blnRowAdded && answer && *answer != Answer::Cancel) {
      AdjustSavedMonths(session_, parent_, *answer, entry, lngActiveRow, picked_);
      RefreshParent();
    }
  } else {
    parent_.RefreshEMI();
  }
  FillEmiGrid();
  AuditSavedMonths(session_, key_, strTypeDesc, reducing_, entry, blnRowAdded);
}

std::optional<Answer> modEMIDet::AskAdjustment(const EmiEntry& entry) {
  if (blnNewRow) return std::nullopt;
  if (!IsAdvanceOrLoan()) return Answer::No;
  if (!entry.amount.IsChanged() && !entry.interest.IsChanged()) return std::nullopt;
  return AskAboutAmount("Save/Update with No Adjustments");
}

Answer modEMIDet::AskAboutAmount(const char* cancel) {
  return session_.desk.MsgBox({fmt::format("Do you want to Adjust the EMI Amount?\r\n"
                                           "Click on 'Yes' to Adjust the EMI Amount for Future Months\r\n"
                                           "Click on 'No' to Create New Month for Recovery\r\n"
                                           "Click 'Cancel' to {}",
                                           cancel),
                               Buttons::YesNoCancel,
                               Icon::Question,
                               Answer::Cancel,
                               session_.title,
                               0,
                               {"&Yes, adjust", "&No, one new month", "&Cancel, no adjustment"}});
}

bool modEMIDet::MayRecoverMore(const EmiEntry& entry) {
  if (!IsAdvanceOrLoan()) return true;
  const ScheduleMonth* active = months_.At(lngActiveRow);
  const double before = active == nullptr ? 0 : AmountOf(*active, Component::Amount);
  return !RecoversTooMuch(parent_.Totals(), before, entry) ||
         session_.desk.Confirm(
             "Entered EMI results in more recovery than required.\r\nDo you want to continue?",
             session_.title);
}

// The overview first: it selects the instruction's row, and the list of months is what an adjustment reads.
void modEMIDet::RefreshParent() {
  parent_.RefreshDetail();
  parent_.RefreshEMI();
  parent_.UpdateOverview();
}

void modEMIDet::cmdDelete_Click() {
  if (FnBlnPermitted(session_, cmdDelete)) return;
  const std::optional<std::size_t> row = RowToDelete();
  if (!row) return;
  fpgEMIDetail.PaintRow(*row, kAboutToGoColour);
  const bool confirmed = MayDelete(*months_.At(*row));
  std::optional<Answer> answer;
  if (confirmed && IsAdvanceOrLoan()) answer = AskAboutAmount("Delete with No Adjustments");
  fpgEMIDetail.PaintRow(*row, kWhite);
  if (!confirmed) return;
  WriteInTurn(
      session_, [this] { return InstructionAndSchedule(session_, key_); }, shown_,
      [&] { DeleteMonth(*row, answer); }, [this] { ShowAnew(); });
}

std::optional<std::size_t> modEMIDet::RowToDelete() {
  const std::vector<ScheduleMonth>& months = months_.Rows();
  if (months.empty()) {
    session_.Inform("No records to delete.");
    return std::nullopt;
  }
  const auto picked = std::ranges::find(months, lngCounter, &ScheduleMonth::counter);
  if (lngCounter == 0 || picked == months.end()) {
    session_.Inform("Select record to delete.");
    return std::nullopt;
  }
  return static_cast<std::size_t>(picked - months.begin());
}

bool modEMIDet::MayDelete(const ScheduleMonth& month) {
  if (const auto refusal = CheckMonthDelete(session_, key_, month.monthYear))
    return Refuse(session_, *this, *refusal, fields_);
  return session_.desk.Confirm(fmt::format("Do you want to delete selected {}{}", strTypeDesc,
                                           IsAdvanceOrLoan() ? " EMI?" : " payment?"),
                               session_.title);
}

void modEMIDet::DeleteMonth(std::size_t row, std::optional<Answer> answer) {
  const ScheduleMonth month = *months_.At(row);
  if (reducing_) StoreComponents(session_, key_);
  DeleteEmiMonth(session_, key_, month);
  AuditDeletedMonth(session_, key_, strTypeDesc, reducing_, month, answer);
  if (answer) {
    RefreshParent();
  } else {
    parent_.RefreshEMI();
  }
  if (answer && *answer != Answer::Cancel) {
    AdjustDeletedMonth(session_, parent_, *answer, row, month);
    RefreshParent();
  }
  FillEmiGrid();
  ClearEmiFields();
  blnNewRow = false;
}

void modEMIDet::chkIntRateRedBal_Click() { fmeIntRedBal.visible = chkIntRateRedBal.Value(); }

void modEMIDet::cmdIntClose_Click() { chkIntRateRedBal.SetValue(false); }

void modEMIDet::cmdIntNew_Click() {
  for (TextBox* box : {&txtInt, &txtIntFrom, &txtIntTo}) box->SetText("");
  SetFocus(txtInt);
}

void modEMIDet::txtIntFrom_LostFocus() {
  txtIntFrom.SetText(FnStrCorrectMonth(txtIntFrom.Text()));
  if (!txtIntFrom.Text().empty() && !months_.Rows().empty())
    txtIntTo.SetText(FnStrFormatMonthYear(months_.Rows().back().monthYear));
}

void modEMIDet::txtIntTo_LostFocus() { txtIntTo.SetText(FnStrCorrectMonth(txtIntTo.Text())); }

void modEMIDet::cmdIntCalculate_Click() {
  if (FnBlnPermitted(session_, cmdSave)) return;
  const InterestPanel panel{.months = {txtIntFrom.Text(), txtIntTo.Text()},
                            .rate = clsGenCmn::FnDblTrimVal(txtInt.Text()),
                            .daysBasis = chkCalculationOn.Value(),
                            .exactDates = chkEffDate.Value()};
  if (const auto refusal = CheckInterestPanel(session_, key_, panel, months_.Rows()))
    return RefusePanel(*refusal);
  const bool written = WriteInTurn(
      session_, [this] { return InstructionAndSchedule(session_, key_); }, shown_,
      [&] {
        StoreComponents(session_, key_);
        WriteInterests(session_, key_, panel, months_.Rows());
      },
      [this] { ShowAnew(); });
  if (!written) return;
  RefreshParent();
  FillEmiGrid();
  ShowSaved(session_);
  for (TextBox* box : {&txtInt, &txtIntFrom, &txtIntTo}) box->SetText("");
}

void modEMIDet::RefusePanel(const PanelRefusal& refusal) {
  const std::map<EmiField, TextBox*> boxes{
      {EmiField::From, &txtIntFrom}, {EmiField::To, &txtIntTo}, {EmiField::Rate, &txtInt}};
  const auto box = boxes.find(refusal.field);
  if (refusal.empties) box->second->SetText("");
  Refuse(session_, *this, refusal, {{refusal.field, box == boxes.end() ? nullptr : box->second}});
}

bool modEMIDet::Form_QueryUnload() { return !blnNewRow || MayLeaveNewRow(session_, cmdSave); }

}  // namespace ktl
