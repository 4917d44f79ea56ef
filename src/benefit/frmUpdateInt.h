#pragma once

#include "benefit/benefit_rows.h"
#include "benefit/yearly_statement.h"
#include "frame/doors.h"
#include "screen/controls.h"
#include "screen/grid.h"
#include "screen/grid_list.h"
#include "screen/progress.h"
#include "screen/quick_search.h"
#include "screen/screen.h"
#include "screen/tick_list.h"

namespace ktl {

// The benefit of a year, employee by employee: reckoned anew whenever a year is chosen, edited, and carried
// to the income tax.
class frmUpdateInt final : public Screen {
 public:
  enum Column : std::size_t {
    kTick,
    kEmployee,
    kEmployeeName,
    kOpening,
    kPrincipal,
    kInterest,
    kBenchmark,
    kBenefit,
    kOriginal,
    kFromTax,
  };
  enum DetailColumn : std::size_t {
    kLoanName,
    kLoanOpening,
    kLoanPrincipal,
    kLoanInterest,
    kLoanBenchmark,
    kLoanDifference,
  };

  frmUpdateInt(Session& session, const YearlyBenefitRequest& opener);

  Label lblFinancialYear{*this, "lblFinancialYear", "Financial Year"};
  ComboBox cmbFinYear{*this, "cmbFinYear"};
  CheckBox chkRule{*this, "chkRule", "IT Rule Applicable"};
  Label lblNote{*this, "lblNote", "Note"};
  Label lblNoteoneMOnth{*this, "lblNoteoneMOnth", "Note: One Month EMI is not Considered."};
  QuickSearch search{*this, "txtQukSearch", "tmrSearch", [this](const std::string&) { Search(); }};
  Grid fpgUpdate{*this, "fpgUpdate"};
  Frame fmeDetail{*this, "fmeDetail", "Loans of the Employee"};
  Label lblDetailName{*this, "lblDetailName"};
  Label lblDetailId{*this, "lblDetailId"};
  Label lblX{*this, "lblX", "Close"};
  Grid fpgDetail{*this, "fpgDetail"};
  CheckBox chkAll{*this, "chkAll", "&Select All"};
  Label lblEmpCount{*this, "lblEmpCount"};
  Label lblSelected{*this, "lblSelected"};
  Progress progress;
  Button cmdPort{*this, "cmdPort", "&Port"};
  Button Command1{*this, "Command1", "&Close"};
  Menu mnuSelect{*this, "mnuSelect", "Port Previous Value For &Employee"};
  Menu mnuAll{*this, "mnuAll", "Port Previous Value For &All Employees"};
  Menu mnuExcel{*this, "mnuExcel", "E&xport to Workbook"};

  void Form_Load() override;
  bool Form_QueryUnload() override;

  void cmbFinYear_Change();
  void chkRule_Click();
  void lblNote_Click();
  void fpgUpdate_CellChange(std::size_t row, std::size_t column);
  void fpgUpdate_DblClick(std::size_t row, std::size_t column);
  void mnuSelect_Click();
  void mnuAll_Click();
  void cmdPort_Click();
  void HideDetail();

 private:
  void ConnectHandlers();
  void SetColumns();
  void ApplyRule();
  void Recalculate();
  void LoadBenefitGrid();
  void Search();
  void EditBenefit(std::size_t row, const std::string& typed);
  void Port(const std::vector<const BenefitRow*>& rows);
  void PortPrevious(const std::vector<BenefitRow>& rows);
  void ShowTip(std::size_t row, std::size_t column);
  void ShowDetail(bool shown);
  std::string Year() const { return cmbFinYear.BoundText(); }  // "" while none is chosen

  Session& session_;
  const YearlyBenefitRequest opener_;
  bool ruling_ = false;  // the box is set by the year
  bool blnSkipOneMonth_ = false;
  long INTFRLNRULE_ = 0;
  GridList<BenefitRow> rows_{fpgUpdate};
  GridList<BenefitLoan> loans_{fpgDetail};
  TickList ticks_{TickRowsOf(fpgUpdate, kTick),
                  {.all = &chkAll, .listed = &lblEmpCount, .selected = &lblSelected, .behindWord = " : "}};
};

}  // namespace ktl
