#include "recovery/modEMIDet.h"

#include "common/amounts.h"
#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/error_box.h"
#include "frame/modExternal.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "instructions/type_rights.h"
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
  for (Control* control : std::initializer_list<Control*>{
           &lblInt, &txtInt, &lblIntFrom, &txtIntFrom, &lblIntTo, &txtIntTo, &chkCalculationOn, &chkEffDate,
           &cmdIntCalculate, &cmdIntNew, &cmdIntClose}) {
    control->container = &fmeIntRedBal;
  }
  fmeIntRedBal.visible = false;
  for (TextBox* box : {&txtAmount, &txtInterest, &txtInt}) {
    box->rightAligned = true;
    box->onKeyPress = [box](int key) { return clsGenCmn::FnIntAllowAmtOnly(key, box->Text()); };
  }
  for (TextBox* box : {&txtFromMonth, &txtToMonth, &txtIntFrom, &txtIntTo}) {
    box->toolTip = kMonthFormat;
    box->onKeyPress = [](int key) { return clsGenCmn::FnIntAllowDateOnlyWithAlpha(key); };
  }
  ConnectHandlers();
}

void modEMIDet::ConnectHandlers() {
  const auto on = [this](void (modEMIDet::*handler)()) {
    return WithNumberedErrorBox(
        session_, [this, handler] { (this->*handler)(); }, session_.title);
  };
  fpgEMIDetail.onRowClick = [this](std::size_t row, std::size_t) { fpgEMIDetail_Click(row); };
  txtFromMonth.onLeave = on(&modEMIDet::txtFromMonth_LostFocus);
  txtToMonth.onLeave = on(&modEMIDet::txtToMonth_LostFocus);
  for (TextBox* box : {&txtAmount, &txtInterest}) {
    box->onLeave = [box] {
      if (clsGenCmn::FnDblTrimVal(box->Text()) != 0)
        box->SetText(clsGenCmn::FnStrConvertToCommaNumber(box->Text(), 2));
    };
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
  const bool apart = reducing_ || session_.SepPiYN;
  fpgEMIDetail.columns = {
      {"Counter", CellType::Number, 60, true},
      {"Month/Year", CellType::Text, 90},
      {"Actual Principle Amount", CellType::Number, 150, !apart},
      {"Actual Interest Amount", CellType::Number, 150, !apart},
      {"Actual Amount", CellType::Number, 120},
      {"Modified Principle Amount", CellType::Number, 160, !apart},
      {"Modified Interest Amount", CellType::Number, 150, !apart},
      {"Modified Amount", CellType::Number, 125},
      {"Institution", CellType::Text, 180, !HasInstitution(key_.type)},
      {"Remarks", CellType::Text, 200},
      {"EMI Rec", CellType::Number, 60, true},
  };
}

void modEMIDet::Form_Activate() {
  ShowForType();
  EnableByRights();
}

void modEMIDet::ShowForType() {
  for (Control* control : std::initializer_list<Control*>{&lblInstitution, &cmbInstitution, &cmdInstitution})
    control->visible = HasInstitution(key_.type);
  lblInterest.visible = txtInterest.visible = IsAdvanceOrLoan();
  txtInterest.enabled = reducing_;
  if (IsAdvanceOrLoan() && reducing_) lblAmount.caption = "Modified Principle";
  chkIntRateRedBal.visible = IsAdvanceOrLoan() && reducing_;
}

// Whoever may not save here may not compute interest into the months either.
void modEMIDet::EnableByRights() {
  const bool writable = session_.EmpLockStatus != 1 && !session_.ReadOnlyUser;
  cmdSave.enabled = cmdDelete.enabled = cmdIntCalculate.enabled = writable;
}

void modEMIDet::FillEmiGrid() {
  months_ = ReadEmiMonths(session_, parent_);
  const std::size_t active = fpgEMIDetail.activeRow;
  fpgEMIDetail.Clear();
  for (const ScheduleMonth& month : months_) {
    const std::size_t row = fpgEMIDetail.AddRow();
    fpgEMIDetail.At(row, kCounter).text = std::to_string(month.counter);
    fpgEMIDetail.At(row, kMonth).text = FnStrFormatMonthYear(month.monthYear);
    fpgEMIDetail.At(row, kActualPrincipal).text = ShownAmount(month.ACTPRNAMT);
    fpgEMIDetail.At(row, kActualInterest).text = ShownAmount(month.ACTINTAMT);
    fpgEMIDetail.At(row, kActualAmount).text = ShownAmount(month.EMIAMT);
    fpgEMIDetail.At(row, kModifiedPrincipal).text = ShownAmount(month.MDFPRNAMT);
    fpgEMIDetail.At(row, kModifiedInterest).text = ShownAmount(month.MDFINTAMT);
    fpgEMIDetail.At(row, kModifiedAmount).text = ShownAmount(month.MDFYAMT);
    fpgEMIDetail.At(row, kInstitution).text = month.institution;
    fpgEMIDetail.At(row, kRemarks).text = month.remarks;
    if (IsAdvanceOrLoan()) fpgEMIDetail.At(row, kEmiRec).text = month.recovered ? "1" : "0";
  }
  fpgEMIDetail.activeRow = active < months_.size() ? active : kNoRow;
}

void modEMIDet::FillInstitutions() {
  std::vector<ListRow> rows;
  if (HasInstitution(key_.type)) {
    Recordset rs(session_.Cn, "Select INSTID, INSTNAME From MAS_INSTITUTION Where TYPEID = " +
                                  std::to_string(NumberOf(key_.type)) + " Order By INSTNAME");
    for (; !rs.Eof(); rs.MoveNext())
      rows.push_back({rs["INSTNAME"].TextOrEmpty(), rs["INSTID"].TextOrEmpty()});
  }
  cmbInstitution.SetRows(std::move(rows));
}

void modEMIDet::fpgEMIDetail_Click(std::size_t row) { ShowEmiRow(row); }

void modEMIDet::ShowEmiRow(std::size_t lngRow) {
  if (lngRow >= months_.size()) return;
  picked_ = months_[lngRow];
  lngCounter = picked_.counter;
  txtFromMonth.SetText(fpgEMIDetail.Text(lngRow, kMonth));
  txtToMonth.SetText(fpgEMIDetail.Text(lngRow, kMonth));
  txtAmount.tag = fpgEMIDetail.Text(lngRow, reducing_ ? kModifiedPrincipal : kModifiedAmount);
  txtAmount.SetText(txtAmount.tag);
  txtInterest.tag = reducing_ ? fpgEMIDetail.Text(lngRow, kModifiedInterest) : "";
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
}

void modEMIDet::cmdNew_Click() { NewEmiRow(); }

void modEMIDet::NewEmiRow() {
  ClearEmiFields();
  const Recordset last(session_.Cn, "Select Max(COUNTER), Max(MONTHYEAR) From INS_EMIDETAIL Where " +
                                        WhereInstruction(key_).text() + " And EMIAMT <> 0");
  const bool hasMonth = !last.Eof() && !last[1].IsNull();
  if (hasMonth) {
    lngCounter = last[0].ToLong() + 1;
    txtFromMonth.SetText(FnStrFormatMonthYear(last[1].ToLong() + 1));
  } else {
    lngCounter = 1;
    if (months_.empty()) txtFromMonth.SetText(FormatDate(session_.machine.clock.Now(), "MMM/YYYY"));
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

bool modEMIDet::Form_QueryUnload() { return !blnNewRow || MayLeaveNewRow(session_, cmdSave); }

}  // namespace ktl
