#pragma once

#include "benefit/benefit_holders.h"
#include "screen/controls.h"
#include "screen/grid.h"
#include "screen/grid_list.h"
#include "screen/quick_search.h"
#include "screen/screen.h"

namespace ktl {

// The benefit of loans with little or no interest, loan by loan and month by month. It stores nothing; the
// rates and the yearly figures are kept by the two screens that it opens.
class frmSepInt final : public Screen {
 public:
  enum Column : std::size_t { kEmployee, kEmployeeName, kLoanNames };
  enum MonthColumn : std::size_t { kMonthYear, kOpening, kPrincipal, kInterest, kBenchmark, kBenefit };

  explicit frmSepInt(Session& session);

  Label lblFinancialYear{*this, "lblFinancialYear", "Financial Year"};
  ComboBox cmbFinYear{*this, "cmbFinYear"};
  Label lblLoan{*this, "lblLoan", "Loan"};
  ComboBox cmbLoan{*this, "cmbLoan"};
  Label lblSlno{*this, "lblSlno", "Serial No."};
  ComboBox cmbSlno{*this, "cmbSlno"};
  Label lblIntAmt{*this, "lblIntAmt"};
  QuickSearch search{*this, "txtQukSearch", "tmrSearch", [this](const std::string&) { Search(); }};
  Grid fpgSepInt{*this, "fpgSepInt"};
  Grid fpgIntDetail{*this, "fpgIntDetail"};
  Label lblEmpCount{*this, "lblEmpCount"};
  Button cmdInt{*this, "cmdInt", "Interest"};
  Button cmdUpdate{*this, "cmdUpdate", "&Update"};
  Button cmdClose{*this, "cmdClose", "&Close"};
  Menu mnuExport{*this, "mnuExport", "E&xport to Workbook"};

  ktl::Subject Subject() const override;

  void Form_Load() override;
  void Form_Unload() override;

  void ChooseYearOrLoan();
  void fpgSepInt_Click(std::size_t row, std::size_t column);
  void cmbSlno_Change();
  void cmdInt_Click();
  void cmdUpdate_Click();

 private:
  void SetColumns();
  void FillBoxes();
  void ShowNewestYear();
  void ListEmployees();
  void ListAndClickFirst();
  void OfferRates();
  void Search();
  void ShowMonths(const Statement& months);
  std::string Year() const { return cmbFinYear.BoundText(); }  // "" while none is chosen
  std::string Loan() const;

  Session& session_;
  bool filling_ = false;  // the boxes change by themselves
  GridList<BenefitHolder> holders_{fpgSepInt};
  GridList<BenefitMonth> months_{fpgIntDetail};
};

}  // namespace ktl
