#pragma once

#include <functional>
#include <string>

#include "instructions/house_loan.h"
#include "screen/grid_list.h"
#include "screen/screen.h"

namespace ktl {

struct Session;

// The house behind a loan, for the tax declaration: its address and kind, and the figures of each financial
// year.
class modHLoan final : public Screen {
 public:
  enum Column : std::size_t { kYear, kPrincipal, kInterest, kAnnualValue, kMunicipalTax };

  modHLoan(Session& session, InstructionParent& parent);

  Frame fmeHouse{*this, "fmeHouse", "House"};
  Label lblHAddr{*this, "lblHAddr", "House Address"};
  TextBox txtHAddr{*this, "txtHAddr"};
  Label lblHType{*this, "lblHType", "Type of House"};
  ComboBox cmbHType{*this, "cmbHType"};
  Label lblNote{
      *this, "lblNote",
      "Is Capital borrowed on or after 1st April 1999 and the acquisition / construction is completed "
      "within 3 years from the end of the Financial Year in which capital was borrowed?"};
  OptionButton optCapBorYes{*this, "optCapBorYes", "CapBor", "Yes"};
  OptionButton optCapBorNo{*this, "optCapBorNo", "CapBor", "No"};
  Button cmdSave{*this, "cmdSave", "&Save"};
  Button cmdDelete{*this, "cmdDelete", "&Delete"};

  Frame fmeYear{*this, "fmeYear", "Financial Year"};
  Label lblFinYear{*this, "lblFinYear", "Financial Year"};
  ComboBox cmbFinYear{*this, "cmbFinYear"};
  Label lblPrcpAmt{*this, "lblPrcpAmt", "Principal Amount"};
  TextBox txtPrcpAmt{*this, "txtPrcpAmt"};
  Label lblInterestAmt{*this, "lblInterestAmt", "Interest Amount"};
  TextBox txtInterestAmt{*this, "txtInterestAmt"};
  Label lblGross{*this, "lblGross", "Gross Annual Value"};
  TextBox txtGross{*this, "txtGross"};
  Label lblMTax{*this, "lblMTax", "Muncipal Tax Paid"};
  TextBox txtMTax{*this, "txtMTax"};
  Button cmdAdd{*this, "cmdAdd", "&Add"};
  Button cmdRemove{*this, "cmdRemove", "&Remove"};
  Grid fpgEMIDetail{*this, "fpgEMIDetail"};
  Button cmdClose{*this, "cmdClose", "&Close"};
  Menu mnuExport{*this, "mnuExport", "E&xport to Workbook"};

  ktl::Subject Subject() const override;

  void Form_Load() override;

  void cmbHType_Change();
  void cmdSave_Click();
  void cmdDelete_Click();
  void cmdAdd_Click();
  void cmdRemove_Click();
  void fpgEMIDetail_Click(std::size_t row, std::size_t column);

 private:
  void ConnectHandlers();
  void SetColumns();
  void ShowHouse();
  void ShowYears();
  void ShowAll();
  void EmptyAmounts();

  HouseType Type() const;
  HouseYear TypedYear() const;
  bool RefuseHouse(const HouseRefusal& refusal);
  bool Write(const std::function<void()>& write);

  Session& session_;
  InstructionParent& parent_;
  const InstructionKey key_;
  GridList<HouseYear> years_{fpgEMIDetail};
  std::string shown_;  // the house and its years as they stood when they were shown
};

}  // namespace ktl
