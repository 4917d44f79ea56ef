#pragma once

#include <optional>

#include "benefit/rate_rows.h"
#include "screen/controls.h"
#include "screen/grid.h"
#include "screen/grid_list.h"
#include "screen/screen.h"

namespace ktl {

// The benchmark rates of the financial years. The first rate of a year is its default one; the others hold
// for the loans that are ticked.
class frmSBI final : public Screen {
 public:
  enum Column : std::size_t { kYear, kRate, kId, kRemarks, kNames };
  enum LoanColumn : std::size_t { kTick, kLoanId, kLoanName };

  explicit frmSBI(Session& session);

  Label lblFinancialYear{*this, "lblFinancialYear", "Financial Year"};
  ComboBox cmbFinYear{*this, "cmbFinYear"};
  Label lblInterest{*this, "lblInterest", "Interest  Rate(%)"};
  Label lblIntid{*this, "lblIntid", "IntID"};
  TextBox txtIntAmt{*this, "txtIntAmt"};
  TextBox txtIntid{*this, "txtIntid"};
  Label lblLoanType{*this, "lblLoanType", "Remarks"};
  TextBox txtLoanType{*this, "txtLoanType"};
  Frame fmeLoans{*this, "fmeLoans", "Loan"};
  Grid fpgLoan{*this, "fpgLoan"};
  Grid fpgInterest{*this, "fpgInterest"};
  Button cmdNew{*this, "cmdNew", "&New"};
  Button cmdSave{*this, "cmdSave", "&Save"};
  Button cmdDelete{*this, "cmdDelete", "&Delete"};
  Button cmdClose{*this, "cmdClose", "&Close"};

  void Form_Load() override;

  void cmbFinYear_Change();
  void txtIntAmt_LostFocus();
  void fpgInterest_Click(std::size_t row, std::size_t column);
  void cmdNew_Click();
  void cmdSave_Click();
  void cmdDelete_Click();

 private:
  void SetColumns();
  void FillRates();
  void FillLoans(const RateRow* of);  // none: nothing is ticked
  void ChooseYear(const std::string& year);
  void ShowAsDefault(bool isDefault);
  TypedRate Typed();
  bool Refuse(const RateRefusal& refusal);
  std::string Year() const { return cmbFinYear.BoundText(); }
  long Id() const;
  void ShowAnew();

  Session& session_;
  GridList<RateRow> rates_{fpgInterest};
  GridList<RateLoan> loans_{fpgLoan};
  bool isNew_ = true;
  std::string shown_;  // the rates of the year when it was chosen
};

}  // namespace ktl
