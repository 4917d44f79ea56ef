#include "instructions/modAdvLoan.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/error_box.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "frame/top_level.h"
#include "instructions/instruction_type.h"
#include "instructions/total_interest.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr const char* kNoRoundingMarker = "SIRoundNone.dat";
constexpr Colour kWarningColour = 0x2020C0;

long FormIdOf(int siType) { return siType == 1 ? 48 : 54; }

}  // namespace

modAdvLoan::modAdvLoan(Session& session) : Screen("modAdvLoan"), session_(session), siType_(session.SIType) {
  caption = session.title;
  PlaceInFrames();
  SetButtonTags();
  SetKeyFilters();
  ConnectHandlers();
}

void modAdvLoan::ConnectHandlers() {
  const auto on = [this](void (modAdvLoan::*handler)()) {
    return WithErrorBox(session_, [this, handler] { (this->*handler)(); });
  };
  const auto opens = [this](const char* screenName) {
    return WithErrorBox(session_, [this, screenName] { session_.screens.Show(session_, screenName, this); });
  };
  cmbEmpName.onChange = on(&modAdvLoan::cmbEmpName_Change);
  cmbEmpIDRef.onChange = on(&modAdvLoan::cmbEmpIDRef_Change);
  chkCurrEMIEmp.onClick = on(&modAdvLoan::chkCurrEMIEmp_Click);
  cmbALName.onChange = on(&modAdvLoan::cmbALName_Change);
  txtSerialNo.onChange = on(&modAdvLoan::txtSerialNo_Change);
  txtAdvDate.onLeave = on(&modAdvLoan::txtAdvDate_LostFocus);
  txtAdvDate.onDblClick = opens("frmKtlCalender");
  txtAdvAmount.onLeave = on(&modAdvLoan::txtAdvAmount_LostFocus);
  txtInstlAmt.onLeave = on(&modAdvLoan::txtInstlAmt_LostFocus);
  txtNoOfInstlmnts.onLeave = on(&modAdvLoan::txtInstlAmt_LostFocus);
  txtRecvrFrom.onLeave = on(&modAdvLoan::txtRecvrFrom_LostFocus);
  optInstlLumpSum.onClick = on(&modAdvLoan::optInstallment_Click);
  optInstlCount.onClick = on(&modAdvLoan::optInstallment_Click);
  cmdNew.onClick = on(&modAdvLoan::cmdNew_Click);
  cmdSave.onClick = on(&modAdvLoan::cmdSave_Click);
  cmdDelete.onClick = on(&modAdvLoan::cmdDelete_Click);
  cmdEMIDelete.onClick = on(&modAdvLoan::cmdEMIDelete_Click);
  cmdFmeFormula.onClick = on(&modAdvLoan::cmdFmeFormula_Click);
  cmdAccept.onClick = on(&modAdvLoan::cmdAccept_Click);
  cmdFrmlaClose.onClick = [this] { ShowFormulaFrame(false); };
  cmdAdvFormulate.onClick = on(&modAdvLoan::cmdAdvFormulate_Click);
  cmdMaster.onClick = on(&modAdvLoan::cmdMaster_Click);
  cmdInstitution.onClick = on(&modAdvLoan::cmdInstitution_Click);
  cmdIntrCalc.onClick = on(&modAdvLoan::cmdIntrCalc_Click);
  cmdEmi.onClick = on(&modAdvLoan::cmdEmi_Click);
  cmdReceipts.onClick = on(&modAdvLoan::cmdReceipts_Click);
  cmdMonthly.onClick = on(&modAdvLoan::cmdMonthly_Click);
  cmdMultiAllot.onClick = on(&modAdvLoan::cmdMultiAllot_Click);
  cmdReport.onClick = on(&modAdvLoan::cmdReport_Click);
  cmdTDSDet.onClick = on(&modAdvLoan::cmdTDSDet_Click);
  lblSummary.onClick = on(&modAdvLoan::lblSummary_Click);
  mnuExport.onClick = on(&modAdvLoan::mnuExport_Click);
  mnuBulkDelete.onClick = opens("frmAdvLoanBulkDelete");
  chkSelectAll.onClick = on(&modAdvLoan::chkSelectAll_Click);
  cmdClose.onClick = [this] { Unload(); };
  fpgAdvLoan.onRowClick = [this](std::size_t, std::size_t) {
    WithErrorBox(session_, [this] { fpgAdvLoan_Click(); })();
  };
  fpgEMI.onCellChange = [this](std::size_t row, std::size_t column) {
    WithErrorBox(session_, [this, row, column] { fpgEMI_CellChange(row, column); })();
  };
  fpgEMI.popup = {&mnuExport};
  fpgAdvLoan.popup = {&mnuBulkDelete};
}

void modAdvLoan::PlaceInFrames() {
  for (Control* control : std::initializer_list<Control*>{
           &lblALName,    &cmbALName,    &cmdMaster,     &lblInstitution, &cmbInstitution, &cmdInstitution,
           &lblLoanAccNo, &txtLoanAccNo, &lblSerialNo,   &txtSerialNo,    &lblAdvDate,     &txtAdvDate,
           &lblAdvAmount, &txtAdvAmount, &cmdFmeFormula, &lblInterestAmt, &txtInterestAmt, &cmdIntrCalc,
           &lblRemarks,   &txtRemarks,   &cmdTDSDet}) {
    control->container = &fmeTransaction;
  }
  for (Control* control :
       std::initializer_list<Control*>{&chkNoRecovery, &optInstlLumpSum, &optInstlCount, &lblInstlAmt,
                                       &txtInstlAmt, &txtNoOfInstlmnts, &lblRecvrFrom, &txtRecvrFrom}) {
    control->container = &fmeInstallment;
  }
  for (Control* control : std::initializer_list<Control*>{&optNearOneRupee, &optNearTenRupee,
                                                          &optNearFiftyRupee, &optRoundNone}) {
    control->container = &fmeInstallmentRoundOff;
  }
  for (Control* control : std::initializer_list<Control*>{
           &lblFormula, &cmbFormula, &cmdAdvFormulate, &lblMonths, &txtMonths, &cmdAccept, &cmdFrmlaClose}) {
    control->container = &fmeFormula;
  }
  for (Control* control : std::initializer_list<Control*>{
           &lblAdvLoan, &txtTotalAdv, &lblTotInterest, &txtTotalInterest, &lblTotRcpt, &txtTotalReceipt,
           &lblTotDedSalary, &txtTotalDedSalary, &lblTotDue, &txtTotalDue, &lblSummary}) {
    control->container = &fmeOverview;
  }
}

void modAdvLoan::SetButtonTags() {
  struct TaggedButton {
    Button* button;
    const char* advance;
    const char* loan;
  };
  for (const TaggedButton& row : {TaggedButton{&cmdMaster, "198", "222"},
                                  {&cmdInstitution, "", "223"},
                                  {&cmdFmeFormula, "199", "224"},
                                  {&cmdSave, "200", "225"},
                                  {&cmdDelete, "201", "226"},
                                  {&cmdMonthly, "202", "227"},
                                  {&cmdMultiAllot, "203", "228"},
                                  {&cmdAccept, "204", "229"},
                                  {&cmdAdvFormulate, "205", "230"},
                                  {&cmdEMIDelete, "206", "231"},
                                  {&cmdEmi, "207", "232"},
                                  {&cmdReceipts, "208", "233"}}) {
    row.button->tag = siType_ == 1 ? row.advance : row.loan;
  }
}

void modAdvLoan::SetKeyFilters() {
  for (TextBox* box : {&txtAdvAmount, &txtInterestAmt, &txtInstlAmt}) {
    box->rightAligned = true;
    box->onKeyPress = [box](int key) { return clsGenCmn::FnIntAllowAmtOnly(key, box->Text()); };
  }
  for (TextBox* box : {&txtSerialNo, &txtNoOfInstlmnts, &txtMonths}) {
    box->rightAligned = true;
    box->onKeyPress = [](int key) { return clsGenCmn::FnIntAllowNumbersOnly(key); };
  }
  for (TextBox* box : {&txtAdvDate, &txtRecvrFrom}) {
    box->onKeyPress = [](int key) { return clsGenCmn::FnIntAllowDateOnlyWithAlpha(key); };
  }
  for (TextBox* box : {&txtTotalAdv, &txtTotalInterest, &txtTotalReceipt, &txtTotalDedSalary, &txtTotalDue}) {
    box->locked = true;
    box->rightAligned = true;
  }
}

void modAdvLoan::Form_Load() {
  EnterTopLevel(session_, *this);
  SetCaptions();
  ShowForType();
  SetGridColumns();
  session_.AdvanceMgmtYN = session_.features.On("ADVMGALYN");
  WithErrorBox(session_, [this] { FillLists(); })();
  ApplyButtonRights(session_, *this, FormIdOf(siType_));
  ShowFormulaFrame(false);
  ClearInstruction();
  ShowScheduleInputs(true);
  EnableCommands();
  SetFocus(cmbEmpName);
}

void modAdvLoan::FillLists() {
  FillNames();
  FillEmployeeLists();
  cmbInstitution.SetRows(ReadInstitutions(session_));
  cmbFormula.SetRows(ReadFormulas(session_));
  if (session_.AdvanceMgmtYN) RefreshTotalInterest(session_);
}

void modAdvLoan::SetCaptions() {
  caption_ = InstructionCaption(session_, siType_);
  caption = caption_ + " - " + session_.title;
  tabDetails.pages = {
      {caption_ + " N&ame"}, {"EMI Details"}, {siType_ == 1 ? "R&eceipts Recovered" : "D&eposits"}};
  lblALName.caption = caption_ + " Name";
  fmeTransaction.caption = caption_ + " Details";
  lblAdvLoan.caption = "Total " + caption_;
  lblLoanAccNo.caption = caption_ + " A/c No.";
  lblTotRcpt.caption = siType_ == 1 ? "Total Receipts" : "Total Deposits";
  cmdReceipts.caption = siType_ == 1 ? "&Receipts" : "&Deposits";
  lblEmpIDRef.caption = session_.options.REFNOCAP;
}

void modAdvLoan::ShowForType() {
  for (Control* control : std::initializer_list<Control*>{&lblLoanAccNo, &txtLoanAccNo, &lblInstitution,
                                                          &cmbInstitution, &cmdInstitution}) {
    control->visible = siType_ == 2;
  }
  cmdTDSDet.visible = false;
  optRoundNone.visible = session_.machine.folder.HasFile(kNoRoundingMarker);
}

void modAdvLoan::FillEmployeeLists() {
  const bool running = chkCurrEMIEmp.Value();
  cmbEmpName.SetRows(ReadEmployees(session_, running, "EMPNAME"));
  cmbEmpIDRef.SetRows(ReadEmployees(session_, running, "REFNO"));
}

void modAdvLoan::FillNames() { cmbALName.SetRows(ReadNames(session_)); }

void modAdvLoan::chkCurrEMIEmp_Click() {
  FillEmployeeLists();
  cmbEmpName.SetText("");
}

void modAdvLoan::EnableCommands() {
  const bool writable = session_.EmpLockStatus != 1 && !session_.ReadOnlyUser;
  for (Button* button :
       {&cmdSave, &cmdDelete, &cmdEMIDelete, &cmdMonthly, &cmdNew, &cmdEmi, &cmdInstitution, &cmdMaster}) {
    button->enabled = writable;
  }
  cmdMultiAllot.enabled = !session_.ReadOnlyUser;
  cmdEmi.enabled = writable || employee_ == 0;  // a read-only user loses it with the first employee
  fpgEMI.columns[kEmiTick].locked = fpgEMI.columns[kEmiRecovered].locked = !writable;
  EnableInputs();
}

// Without an employee nothing can be typed; the names can be kept all the same.
void modAdvLoan::EnableInputs() {
  for (Control* input :
       std::initializer_list<Control*>{&cmbALName, &cmbInstitution, &txtLoanAccNo, &txtSerialNo, &txtAdvDate,
                                       &txtAdvAmount, &txtInterestAmt, &cmdIntrCalc, &txtRemarks}) {
    input->enabled = employee_ != 0;
  }
  cmdFmeFormula.enabled = employee_ != 0 && fmeInstallment.visible;
  fmeInstallment.enabled = fmeInstallmentRoundOff.enabled = employee_ != 0;
}

void modAdvLoan::cmbEmpName_Change() {
  employee_ = static_cast<long>(Val(cmbEmpName.BoundText()));
  const std::optional<Date> left = employee_ == 0 ? std::nullopt : ReadDateOfLeaving(session_, employee_);
  lblEmpName.caption = left ? " Employee Left " : "Employee Name";
  lblEmpName.foreColour = left ? kWarningColour : kNoColour;
  lblEmpName.toolTip = left ? FormatDate(*left, "dd/mmm/yyyy") : "";
  cmbEmpIDRef.SetBoundText(cmbEmpName.BoundText());
  newRecord_ = false;
  serial_ = 0;
  txtSerialNo.SetText("");
  ClearInstruction();
  ShowScheduleInputs(true);
  RefreshDetail();
  RefreshEMI();
  RefreshReceipts();
  UpdateOverview();
  session_.EmpLockStatus = 0;
  if (employee_ != 0) ReadEmpLockStatus(session_, employee_);
  EnableCommands();
}

void modAdvLoan::cmbEmpIDRef_Change() {
  if (cmbEmpIDRef.BoundText() == cmbEmpName.BoundText()) return;
  cmbEmpName.SetBoundText(cmbEmpIDRef.BoundText());
}

void modAdvLoan::cmbALName_Change() {
  const std::string& name = cmbALName.Text();
  rules_ = {};
  if (session_.AdvanceMgmtYN) {
    rules_ = ReadNameRules(session_, name);
    txtNoOfInstlmnts.enabled = true;
    if (rules_.EMIRECCNT > 0) {
      optInstlCount.SetValue(true);
      txtNoOfInstlmnts.SetText(std::to_string(rules_.EMIRECCNT));
    } else {
      optInstlLumpSum.SetValue(true);
    }
  }
  cmdTDSDet.visible = siType_ == 2 && employee_ != 0 && MayHaveHouseLoan(session_, employee_, name);
  session_.SepPiYN = ReadSepPiYN(session_, name);
  ShowInterestLock();
  ShowComponentColumns();
}

void modAdvLoan::ShowInterestLock() {
  txtInterestAmt.locked = session_.SepPiYN;
  txtInterestAmt.backColour = session_.SepPiYN ? kWindowColour : kWhite;
  if (session_.SepPiYN) txtInterestAmt.SetText("");
  if (session_.AdvanceMgmtYN && rules_.REDUCINGBALYN) {
    // Looks locked, since the schedule computes the interest, but can be typed in: the lock follows SEPPIYN
    // alone.
    txtInterestAmt.SetText("");
    txtInterestAmt.backColour = kToolTipColour;
  }
}

void modAdvLoan::txtSerialNo_Change() {
  serial_ = employee_ == 0 ? 0 : static_cast<long>(Val(txtSerialNo.Text()));
  const std::optional<AdvLoanDetail> detail = serial_ == 0 ? std::nullopt : ReadAdvLoan(session_, Key());
  if (detail) {
    newRecord_ = false;
    ShowInstruction(*detail);
    ShowScheduleInputs(false);
  } else if (!newRecord_) {
    ClearInstruction();
    ShowScheduleInputs(true);
    newRecord_ = serial_ > 0;
  }
  cmdTDSDet.visible =
      siType_ == 2 && employee_ != 0 && MayHaveHouseLoan(session_, employee_, cmbALName.Text());
  RefreshEMI();
  RefreshReceipts();
}

void modAdvLoan::ShowInstruction(const AdvLoanDetail& detail) {
  cmbALName.SetText(detail.name);
  txtLoanAccNo.SetText(detail.account);
  txtAdvDate.SetText(detail.date.IsDate() ? FormatDate(detail.date.date(), "dd/mm/yyyy") : "");
  txtAdvAmount.SetText(FormatNumber(detail.amount, "0.00"));
  txtInterestAmt.SetText(FormatNumber(detail.interest, "0.00"));
  txtRemarks.SetText(detail.remarks);
  cmbInstitution.SetText(detail.institution);
  chkNoRecovery.SetValue(false);
  txtInstlAmt.SetText("");
  txtRecvrFrom.SetText("");
  ForgetFormula();
}

// Everything but the serial number.
void modAdvLoan::ClearInstruction() {
  for (TextBox* box : {&txtLoanAccNo, &txtAdvDate, &txtAdvAmount, &txtInterestAmt, &txtRemarks, &txtInstlAmt,
                       &txtNoOfInstlmnts, &txtRecvrFrom}) {
    box->SetText("");
  }
  cmbALName.SetText("");
  cmbInstitution.SetText("");
  chkNoRecovery.SetValue(false);
  ForgetFormula();
  const bool none = session_.machine.folder.HasFile(kNoRoundingMarker);
  (none ? optRoundNone : optNearOneRupee).SetValue(true);
  optInstlLumpSum.SetValue(true);
}

// An instruction that is stored shows none of the schedule's inputs: its schedule is made once.
void modAdvLoan::ShowScheduleInputs(bool shown) {
  fmeInstallment.visible = shown;
  txtAdvAmount.locked = !shown;
  EnableInputs();
  optInstallment_Click();
}

void modAdvLoan::optInstallment_Click() {
  const bool byCount = optInstlCount.Value();
  lblInstlAmt.caption = byCount ? "No. of Instl." : "Instl. Amount";
  txtInstlAmt.visible = !byCount;
  txtNoOfInstlmnts.visible = byCount;
  fmeInstallmentRoundOff.visible = byCount && fmeInstallment.visible;
}

void modAdvLoan::txtAdvDate_LostFocus() {
  const std::string typed = txtAdvDate.Text();
  txtAdvDate.SetText(IsDate(typed) ? FormatDateText(typed, "dd/MM/yyyy")
                                   : clsDateHandle::FnStrCorrectDate(typed));
  if (txtRecvrFrom.Text().empty() && !txtAdvDate.Text().empty()) {
    txtRecvrFrom.SetText(FormatDateText(txtAdvDate.Text(), "Mmm/YYYY"));
  }
}

void modAdvLoan::txtAdvAmount_LostFocus() {
  // A stored amount cannot be typed over, so leaving it must not touch the stored interest.
  if (txtAdvAmount.locked || txtAdvAmount.Text().empty()) return;
  const double amount = clsGenCmn::FnDblTrimVal(txtAdvAmount.Text());
  if (session_.AdvanceMgmtYN && !rules_.REDUCINGBALYN && rules_.INTRRATE > 0) {
    // One figure for the whole advance, whatever its tenure.
    txtInterestAmt.SetText(NumberText(amount * (rules_.INTRRATE / 100)));
  }
  txtAdvAmount.SetText(FormatNumber(amount, "0.00"));
}

void modAdvLoan::txtInstlAmt_LostFocus() {
  const bool byCount = optInstlCount.Value();
  TextBox& box = byCount ? txtNoOfInstlmnts : txtInstlAmt;
  if (box.Text().empty()) return;
  box.SetText(FormatNumber(clsGenCmn::FnDblTrimVal(box.Text()), byCount ? "0" : "0.00"));
}

void modAdvLoan::txtRecvrFrom_LostFocus() { txtRecvrFrom.SetText(FnStrCorrectMonth(txtRecvrFrom.Text())); }

bool modAdvLoan::Form_QueryUnload() {
  if (!cmdSave.enabled && !cmdDelete.enabled) return true;
  if (!newRecord_) return true;
  switch (session_.desk.MsgBox({"Do you want to Save entered details?", Buttons::YesNoCancel, Icon::Question,
                                Answer::Yes, session_.title})) {
    case Answer::Yes: {
      bool saved = false;  // a failure is shown and keeps the screen
      WithErrorBox(session_, [&] { saved = ValidateAndSave(); })();
      return saved;
    }
    case Answer::No:
      return true;
    default:
      return false;
  }
}

void modAdvLoan::Form_Unload() { LeaveTopLevel(session_); }

}  // namespace ktl
