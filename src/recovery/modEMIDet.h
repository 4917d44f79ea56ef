#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "recovery/emi_entry.h"
#include "screen/controls.h"
#include "screen/grid.h"
#include "screen/grid_list.h"
#include "screen/screen.h"

namespace ktl {

// The editor of one instruction's schedule, a row a month, for instructions of every type.
class modEMIDet final : public Screen {
 public:
  enum Column : std::size_t {
    kCounter,
    kMonth,
    kActualPrincipal,
    kActualInterest,
    kActualAmount,
    kModifiedPrincipal,
    kModifiedInterest,
    kModifiedAmount,
    kInstitution,
    kRemarks,
    kEmiRec,
  };

  modEMIDet(Session& session, InstructionParent& parent);

  Grid fpgEMIDetail{*this, "fpgEMIDetail"};
  Label lblFromMonth{*this, "lblFromMonth", "From Month"};
  TextBox txtFromMonth{*this, "txtFromMonth"};
  Label lblToMonth{*this, "lblToMonth", "To Month"};
  TextBox txtToMonth{*this, "txtToMonth"};
  Label lblAmount{*this, "lblAmount", "Modified Amount"};
  TextBox txtAmount{*this, "txtAmount"};
  Label lblInterest{*this, "lblInterest", "Modified Interest"};
  TextBox txtInterest{*this, "txtInterest"};
  Label lblInstitution{*this, "lblInstitution", "Institution"};
  ComboBox cmbInstitution{*this, "cmbInstitution"};
  Button cmdInstitution{*this, "cmdInstitution", "..."};
  Label lblRemarks{*this, "lblRemarks", "Remarks"};
  TextBox txtRemarks{*this, "txtRemarks"};

  CheckBox chkIntRateRedBal{*this, "chkIntRateRedBal", "Int. Rate for Reducing Balance"};
  Frame fmeIntRedBal{*this, "fmeIntRedBal", "Interest Rate for Reducing Balance"};
  Label lblInt{*this, "lblInt", "Interest Rate"};
  TextBox txtInt{*this, "txtInt"};
  Label lblIntFrom{*this, "lblIntFrom", "From Month"};
  TextBox txtIntFrom{*this, "txtIntFrom"};
  Label lblIntTo{*this, "lblIntTo", "To Month"};
  TextBox txtIntTo{*this, "txtIntTo"};
  CheckBox chkCalculationOn{*this, "chkCalculationOn", "Cal. Days"};
  CheckBox chkEffDate{*this, "chkEffDate", "Eff. Date/DOL"};
  Button cmdIntCalculate{*this, "cmdIntCalculate", "Ca&lculate"};
  Button cmdIntNew{*this, "cmdIntNew", "Ne&w"};
  Button cmdIntClose{*this, "cmdIntClose", "Clos&e"};

  Button cmdNew{*this, "cmdNew", "&New"};
  Button cmdSave{*this, "cmdSave", "&Save "};
  Button cmdDelete{*this, "cmdDelete", "&Delete"};
  Button cmdClose{*this, "cmdClose", "&Close"};

  ktl::Subject Subject() const override;

  void Form_Load() override;
  void Form_Activate() override;
  bool Form_QueryUnload() override;

  void fpgEMIDetail_Click(std::size_t row);
  void txtFromMonth_LostFocus();
  void txtToMonth_LostFocus();
  void cmdNew_Click();
  void cmdSave_Click();
  void cmdDelete_Click();
  void cmdInstitution_Click();
  void chkIntRateRedBal_Click();
  void txtIntFrom_LostFocus();
  void txtIntTo_LostFocus();
  void cmdIntCalculate_Click();
  void cmdIntNew_Click();
  void cmdIntClose_Click();

  void FillEmiGrid();
  void FillInstitutions();
  void ShowEmiRow(std::size_t lngRow);
  void NewEmiRow();
  void ClearEmiFields();
  bool SaveEmiRow();  // false when nothing was written

 private:
  void ConnectHandlers();
  void SetColumns();
  void ShowForType();
  void EnableByRights();

  bool IsAdvanceOrLoan() const;
  EmiEntry Entry() const;
  void RefusePanel(const PanelRefusal& refusal);
  // Nothing when no question was due.
  std::optional<Answer> AskAdjustment(const EmiEntry& entry);
  bool MayRecoverMore(const EmiEntry& entry);
  std::optional<std::size_t> RowToDelete();
  bool MayDelete(const ScheduleMonth& month);
  Answer AskAboutAmount(const char* cancel);
  void DeleteMonth(std::size_t row, std::optional<Answer> answer);
  void WriteEntry(const EmiEntry& entry, std::optional<Answer> answer);
  // False when another workstation has changed the months that the entry rests on.
  bool SaveInTurn(const EmiEntry& entry, const std::function<void()>& write);
  void ShowAnew();
  void RefreshParent();

  Session& session_;
  InstructionParent& parent_;
  InstructionKey key_;
  bool reducing_;
  std::string strTypeDesc;
  GridList<ScheduleMonth> months_{fpgEMIDetail};
  const std::map<EmiField, Control*> fields_{
      {EmiField::New, &cmdNew},           {EmiField::From, &txtFromMonth},
      {EmiField::To, &txtToMonth},        {EmiField::Amount, &txtAmount},
      {EmiField::Interest, &txtInterest}, {EmiField::Institution, &cmbInstitution}};
  bool blnNewRow = false;
  long lngCounter = 0;           // of the month picked, the next one after cmdNew, 0 for none
  std::size_t lngActiveRow = 0;  // in the grid, when a save began
  ScheduleMonth picked_;         // as it was before editing
  std::string shown_;            // the instruction and its months, as the grid shows them
};

}  // namespace ktl
