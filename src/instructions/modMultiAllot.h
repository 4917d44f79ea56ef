#pragma once

#include <string>
#include <vector>

#include "instructions/advloan_fields.h"
#include "instructions/incentive_frame.h"
#include "instructions/kept_formula_frame.h"
#include "instructions/period_frame.h"
#include "instructions/premium_allotment.h"
#include "screen/grid_list.h"
#include "screen/progress.h"
#include "screen/screen.h"
#include "screen/tick_list.h"

namespace ktl {

struct Session;

// One instruction for many employees: an advance, a loan, a group insurance or a periodic incentive.
class modMultiAllot final : public Screen {
 public:
  enum NoteColumn : std::size_t { kWho, kWhy };

  modMultiAllot(Session& session, InstructionType type);

  // For whom
  Frame fmeEmployee{*this, "fmeEmployee", "Employees"};
  CheckBox chkSelEmployee{*this, "chkSelEmployee", "Select &All"};
  Button cmdFilter{*this, "cmdFilter", "&Filter"};
  ListBox lstEmployee{*this, "lstEmployee"};
  Label lblListed{*this, "lblListed"};
  Label lblSelected{*this, "lblSelected"};

  // What
  Label lblSIName{*this, "lblSIName"};
  ComboBox cmbSIName{*this, "cmbSIName"};
  Button cmdMaster{*this, "cmdMaster", "..."};
  Frame fmeLoanDet{*this, "fmeLoanDet"};
  Label lblInstitution{*this, "lblInstitution", "Institution"};
  ComboBox cmbInstitution{*this, "cmbInstitution"};
  Button cmdInstitution{*this, "cmdInstitution", "..."};
  Label lblLoanAccNo{*this, "lblLoanAccNo"};
  TextBox txtLoanAccNo{*this, "txtLoanAccNo"};

  Frame fmeAmountDet{*this, "fmeAmountDet"};
  Label lblAdvDate{*this, "lblAdvDate", "Date"};
  TextBox txtAdvDate{*this, "txtAdvDate"};
  Label lblAdvAmount{*this, "lblAdvAmount", "Amount"};
  TextBox txtAdvAmount{*this, "txtAdvAmount"};
  Button cmdFmeFormula{*this, "cmdFmeFormula", "F&ormula"};
  Label lblInterestAmt{*this, "lblInterestAmt", "Interest Amount"};
  TextBox txtInterestAmt{*this, "txtInterestAmt"};
  Button cmdIntrCalc{*this, "cmdIntrCalc", "&Interest"};
  RecoveryFrame recovery;

  Frame fmeGIDet{*this, "fmeGIDet"};
  Label lblStartMonth{*this, "lblStartMonth", "Start Month"};
  TextBox txtStartMonth{*this, "txtStartMonth"};
  Label lblEndMonth{*this, "lblEndMonth", "End Month"};
  TextBox txtEndMonth{*this, "txtEndMonth"};
  Label lblPolicyAmount{*this, "lblPolicyAmount", "Amount"};
  TextBox txtPolicyAmount{*this, "txtPolicyAmount"};
  Button cmdPFormula{*this, "cmdPFormula", "F&ormula"};
  PeriodFrame period;
  IncentiveFrame incentive;

  Label lblRemarks{*this, "lblRemarks", "Remarks"};
  TextBox txtRemarks{*this, "txtRemarks"};

  // The amount by a formula
  KeptFormulaFrame formula;
  Label lblMonths{*this, "lblMonths", "Number of Months"};
  TextBox txtMonths{*this, "txtMonths"};
  KeptFormulaFrame premiumFormula;
  OptionButton optStartMonth{*this, "optStartMonth", "fmePFormula", "In the Start Month"};
  OptionButton optEndMonth{*this, "optEndMonth", "fmePFormula", "In the End Month"};
  Label lblFormulaKept{*this, "lblFormulaKept"};  // what the amounts are computed by

  // Whom the last save has something to tell of
  Grid fpgNotes{*this, "fpgNotes"};
  Menu mnuExport{*this, "mnuExport", "E&xport to Workbook"};

  Progress progress;
  Button cmdSave{*this, "cmdSave", "&Save"};
  Button cmdClose{*this, "cmdClose", "&Close"};

  void Form_Load() override;

  void cmbSIName_Change();
  void cmdFilter_Click();
  void cmdSave_Click();

 private:
  void PlaceInFrames();
  void SetKeyFilters();
  void ConnectHandlers();
  void ConnectFormulas();
  void ConnectPermitted();
  void SetCaptions();
  void ShowForType();
  void FillEmployees();
  void FillNames();
  void FillInstitutions();
  void ClearFields();
  void ShowFormulaKept();

  std::vector<long> TickedEmployees() const;
  AdvLoanEntry Entry() const;
  PremiumAllotment Premium() const;
  bool RefusePremium(const PremiumAllotRefusal& refusal);

  struct Allotment {
    Date serviceDay;
    std::string notInService;  // what is told of a person outside it: "... is not within ..."
    AllottedAmounts::Terms terms;
    std::function<void(long employee, double amount)> give;
    std::function<bool()> lastCheck = {};  // behind the question
  };
  bool AllotAdvLoan(const std::vector<long>& employees);
  bool AllotPremium(const std::vector<long>& employees);
  bool Allot(const std::vector<long>& employees, const Allotment& allotment);
  bool AcceptsService(const std::vector<long>& employees, const std::vector<long>& accepted,
                      const Allotment& allotment);
  void AfterSave();
  void TellNotes();
  std::string WordsOf(long employee) const;

  Session& session_;
  const InstructionType type_;
  std::string caption_;  // the company's word for the type
  NameRules rules_;
  const AdvLoanFields fields_{cmbSIName,    cmbInstitution, txtLoanAccNo, txtAdvDate,
                              txtAdvAmount, txtInterestAmt, txtRemarks,   recovery};
  GridList<AllotmentNote> notes_{fpgNotes};
  TickList ticks_;
};

}  // namespace ktl
