// What the entry of advances and loans opens: the formula frame, other screens, sibling programs.
#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "formula/clsEvalFormula.h"
#include "frame/modExternal.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "frame/top_level.h"
#include "instructions/instruction_statements.h"
#include "instructions/modAdvLoan.h"
#include "runtime/numbers.h"
#include "workbook/grid_workbook.h"

namespace ktl {

namespace {

bool IsSummaryDenied(Session& session) {
  return session.data.FnBlnRecExists(fmt::format(
      "SELECT BUTALLOWYN FROM SEC_BUTPER WHERE BUTID = 612 AND BUTALLOWYN=0 AND GROUPID = (SELECT GROUPID "
      "from SEC_USERLIST WHERE UPPER(USERNAME)= '{}')",
      SqlText(session, session.CurrentUser())));
}

}  // namespace

void modAdvLoan::ForgetFormula() {
  formulaMonths_ = 0;
  cmbFormula.SetText("");
  txtMonths.SetText("");
}

void modAdvLoan::ShowFormulaFrame(bool shown) {
  fmeFormula.visible = shown;
  fmeTransaction.enabled = !shown;
  if (shown) SetFocus(cmbFormula);
}

void modAdvLoan::cmdFmeFormula_Click() {
  if (FnBlnPermitted(session_, cmdFmeFormula)) return;
  ShowFormulaFrame(true);
}

void modAdvLoan::cmdAccept_Click() {
  if (FnBlnPermitted(session_, cmdAccept)) return;
  const auto refuse = [this](const std::string& text, Control& field) {
    session_.Inform(text);
    SetFocus(field);
  };
  if (txtAdvDate.Text().empty()) return refuse("Enter " + caption_ + " Date.", txtAdvDate);
  if (cmbFormula.Text().empty()) {
    if (!session_.desk.Confirm("Continue without selecting a 'Formula'?", session_.title)) return;
    ForgetFormula();
    ShowFormulaFrame(false);
    SetFocus(txtInterestAmt);
    return;
  }
  if (txtMonths.Text().empty()) return refuse("Enter 'Number of Months'.", txtMonths);
  formulaMonths_ = clsGenCmn::FnDblTrimVal(txtMonths.Text());  // kept even when the formula is refused
  if (!cmbFormula.MatchesList()) return refuse("Select proper 'Formula'.", cmbFormula);
  const long month = FnLngMonthYear(txtAdvDate.Text());
  if (const std::optional<long> detailRow = DetailRowOfMonth(session_, employee_, month)) {
    const Date first = *ParseDate("01/" + FnStrFormatMonthYear(month));
    const double amount =
        clsEvalFormula(session_).FnDblEvalFormula(static_cast<long>(Val(cmbFormula.BoundText())), employee_,
                                                  *detailRow, month, first, first.AddMonths(1).AddDays(-1));
    txtAdvAmount.SetText(FormatNumber(amount * formulaMonths_, "0.00"));
  }
  ShowFormulaFrame(false);
  SetFocus(txtInterestAmt);
}

void modAdvLoan::cmdAdvFormulate_Click() {
  if (FnBlnPermitted(session_, cmdAdvFormulate)) return;
  StartExternal(session_, {"KTLFilter", "Kestrel Ledger - Expression Editor",
                           fmt::format("1505,{}$Kestrel Ledger - Expression Editor",
                                       Value(session_.MultiLoginYN).ToText())});
  cmbFormula.SetRows(ReadFormulas(session_));
}

void modAdvLoan::cmdMaster_Click() {
  if (FnBlnPermitted(session_, cmdMaster)) return;
  session_.screens.Show(session_, "modSIMaster", this);
  FillNames();
  cmdTDSDet.visible = false;
}

void modAdvLoan::cmdInstitution_Click() {
  if (FnBlnPermitted(session_, cmdInstitution)) return;
  OpenInstitutionMaster(session_);
  cmbInstitution.SetRows(ReadInstitutions(session_));
}

void modAdvLoan::cmdMonthly_Click() {
  if (FnBlnPermitted(session_, cmdMonthly)) return;
  session_.FormEmpId = employee_;
  session_.screens.Show(session_, "modEMIEmp", this);
}

void modAdvLoan::cmdMultiAllot_Click() {
  if (FnBlnPermitted(session_, cmdMultiAllot)) return;
  session_.screens.Show(session_, "modMultiAllot", this);
  RegisterWindow(session_);
}

void modAdvLoan::OpenOnInstruction(const char* screenName) {
  const bool listed = fpgAdvLoan.activeRow < fpgAdvLoan.rows.size() &&
                      Val(fpgAdvLoan.Text(fpgAdvLoan.activeRow, kListAmount)) != 0;
  if (!listed || serial_ == 0 || newRecord_) {
    session_.Inform("Select a " + caption_ + " record.");
    return;
  }
  session_.screens.Show(session_, screenName, this);
  RefreshDetail();
  RefreshEMI();
  RefreshReceipts();
  UpdateOverview();
}

void modAdvLoan::cmdEmi_Click() {
  if (FnBlnPermitted(session_, cmdEmi)) return;
  OpenOnInstruction("modEMIDet");
}

void modAdvLoan::cmdReceipts_Click() {
  if (FnBlnPermitted(session_, cmdReceipts)) return;
  OpenOnInstruction("modReceipts");
}

void modAdvLoan::cmdReport_Click() {
  if (FnBlnPermitted(session_, cmdReport)) return;
  StartExternal(session_, {"KTLSIRep", "KestrelLedger - Reports",
                           fmt::format("{}#{}#{}#0", type_ == InstructionType::Advance ? "1521" : "1522",
                                       Value(session_.ReportFlag).ToText(), session_.ReportNumber)});
}

void modAdvLoan::lblSummary_Click() {
  if (IsSummaryDenied(session_)) {
    session_.desk.Warn("Permission denied.", session_.title);
    return;
  }
  if (employee_ == 0) return;
  session_.machine.settings.Set("Settings", "EMPSUMMRY", std::to_string(employee_));
  StartExternal(session_, {"KTLFFS", "KestrelLedger - Full & Final settlement",
                           fmt::format("1502,{}", Value(session_.MultiLoginYN).ToText())});
}

void modAdvLoan::mnuExport_Click() {
  if (fpgEMI.rows.empty()) {
    session_.Inform("No Records Found");
    return;
  }
  const std::string file = ExportGridToWorkbook(session_, fpgEMI, "EMI Details");
  if (!file.empty()) session_.Inform("The schedule has been written to " + file);
}

void modAdvLoan::cmdTDSDet_Click() {
  if (FnBlnPermitted(session_, cmdTDSDet)) return;
  session_.screens.Show(session_, "modHLoan", this);
}

void modAdvLoan::cmdIntrCalc_Click() {
  if (FnBlnPermitted(session_, cmdIntrCalc)) return;
  CalculateInterest();
}

void modAdvLoan::CalculateInterest() {
  SettingsStore& settings = session_.machine.settings;
  settings.Set("Settings", "ICPrcpl", NumberText(clsGenCmn::FnDblTrimVal(txtAdvAmount.Text())));
  if (session_.SepPiYN) {
    session_.screens.Show(session_, "modInterestMaster", this);
    RefreshEMI();
    UpdateOverview();
  } else {
    StartExternal(session_, {"KTLIntrCalc", "Interest Calculation", ""});
  }
  settings.Set("Settings", "ICPrcpl", "");
  // A figure already typed is kept; the calculator's answer is dropped then.
  if (txtInterestAmt.Text().empty()) txtInterestAmt.SetText(settings.Get("Settings", "ICIntrAmt", ""));
}

}  // namespace ktl
