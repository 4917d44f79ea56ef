#include "benefit/frmSepInt.h"

#include <fmt/format.h>

#include "benefit/amount_column.h"
#include "benefit/benchmark_rate.h"
#include "benefit/month_statement.h"
#include "common/month_year.h"
#include "frame/employee_number.h"
#include "frame/fin_years.h"
#include "frame/handler_guard.h"
#include "frame/session.h"
#include "frame/top_level.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "workbook/export_menu.h"

namespace ktl {

frmSepInt::frmSepInt(Session& session) : Screen("frmSepInt"), session_(session) {
  caption = "Automated Interest Free Loan Calculation";
  cmbSlno.enabled = false;
  cmbSlno.editable = false;
  search.txtSearch.toolTip = "Employees whose name or number has this in it";
  const HandlerGuard on(session_, *this, ErrorStyle::NumberFirst);
  for (ComboBox* box : {&cmbFinYear, &cmbLoan}) box->onChange = on(&frmSepInt::ChooseYearOrLoan);
  cmbSlno.onChange = on(&frmSepInt::cmbSlno_Change);
  fpgSepInt.onRowClick = on(&frmSepInt::fpgSepInt_Click);
  cmdInt.onClick = on(&frmSepInt::cmdInt_Click);
  cmdUpdate.onClick = on(&frmSepInt::cmdUpdate_Click);
  cmdClose.onClick = [this] { Unload(); };
  BindExport(session_, mnuExport, fpgIntDetail, [this] {
    return ExportWords{"EMI Details", "The list", Subject().employee};
  });
}

Subject frmSepInt::Subject() const {
  const BenefitHolder* holder = holders_.Active();
  if (holder == nullptr) return {};
  return {.employee = fmt::format("{} ({})", holder->name, holder->number), .instruction = Loan()};
}

std::string frmSepInt::Loan() const { return cmbLoan.MatchesList() ? Trim(cmbLoan.Text()) : ""; }

void frmSepInt::Form_Load() {
  EnterTopLevel(session_, *this);
  SetColumns();
  RunGuarded(session_, ErrorStyle::NumberFirst, "", [this] {
    FillBoxes();
    ListEmployees();
    ShowNewestYear();
  });
}

void frmSepInt::Form_Unload() { LeaveTopLevel(session_); }

void frmSepInt::SetColumns() {
  using Holder = BenefitHolder;
  holders_.SetColumns({
      {{NumberingOf(session_).caption, CellType::Text, 90}, &Holder::number},
      {{"Employee Name", CellType::Text, 190}, &Holder::name},
      {{"Loan Name", CellType::Text, 170}, &Holder::loans},
  });
  using Month = BenefitMonth;
  months_.SetColumns({
      {{"Month/Year", CellType::Text, 80}, &Month::Name},
      {{"Opening Balance", CellType::Number, 110}, TwoPlaces(&Month::opening)},
      {{"Principle Amount", CellType::Number, 113}, TwoPlaces(&Month::principal)},
      {{"Int. from Loan module", CellType::Number, 143}, TwoPlaces(&Month::interest)},
      {{"Interest", CellType::Number, 85}, TwoPlaces(&Month::benchmark)},
      {{"Int. Benefit Amount", CellType::Number, 133}, TwoPlaces(&Month::difference)},
  });
  fpgIntDetail.summed = {kPrincipal, kInterest, kBenchmark, kBenefit};
}

void frmSepInt::FillBoxes() {
  cmbFinYear.SetRows(ReadFinYears(session_));
  cmbLoan.SetRows(ReadBenefitLoans(session_));
}

// The newest year, when it has a rate, and the first name.
void frmSepInt::ShowNewestYear() {
  const std::vector<ListRow>& years = cmbFinYear.Rows();
  const std::vector<ListRow>& loans = cmbLoan.Rows();
  if (years.empty() || !PlainRate(session_, Left(years.front().text, 4))) return;
  filling_ = true;
  cmbFinYear.SetText(years.front().text);
  if (!loans.empty()) cmbLoan.SetText(loans.front().text);
  filling_ = false;
  ChooseYearOrLoan();
}

void frmSepInt::ChooseYearOrLoan() {
  if (filling_) return;
  lblIntAmt.caption.clear();
  if (Year().empty()) return ListEmployees();
  const std::string year = Left(Year(), 4);
  // Without a name the markers of two names that follow one another are found.
  lblIntAmt.caption = "Int. Rate: " + session_.data.Text(RateOfLoan(session_, year, Loan()), "0") + "%";
  if (!PlainRate(session_, year)) return OfferRates();
  ListAndClickFirst();
  if (!cmbSlno.Text().empty()) cmbSlno_Change();
}

void frmSepInt::OfferRates() {
  holders_.Show({});
  months_.Show({});
  if (session_.desk.Confirm("Interest is not entered for selected Financial Year. Do you want to enter now?",
                            session_.title))
    return cmdInt_Click();
  filling_ = true;
  for (ComboBox* box : {&cmbFinYear, &cmbLoan, &cmbSlno}) box->SetText("");
  filling_ = false;
  ChooseYearOrLoan();
}

void frmSepInt::ListEmployees() {
  months_.Show({});
  cmbSlno.enabled = false;
  cmbSlno.SetRows({});
  filling_ = true;
  cmbSlno.SetText("");
  filling_ = false;
  fpgSepInt.activeRow = kNoRow;
  holders_.Show(Year().empty() ? std::vector<BenefitHolder>()
                               : ReadBenefitHolders(session_, BenefitYearOf(session_, Year()), Loan(),
                                                    Trim(search.txtSearch.Text())));
  lblEmpCount.caption = "Employee Listed : " + std::to_string(holders_.Rows().size());
}

void frmSepInt::ListAndClickFirst() {
  ListEmployees();
  if (holders_.Rows().empty()) return;
  fpgSepInt.activeRow = 0;
  fpgSepInt_Click(0, kEmployee);
}

void frmSepInt::Search() {
  RunGuarded(session_, ErrorStyle::NumberFirst, "", [this] { ListAndClickFirst(); });
}

void frmSepInt::fpgSepInt_Click(std::size_t row, std::size_t) {
  const BenefitHolder* holder = holders_.At(row);
  if (holder == nullptr || Year().empty()) return;
  const BenefitYear year = BenefitYearOf(session_, Year());
  std::vector<ListRow> serials = ReadLoanSerials(session_, year, holder->employee, Loan());
  cmbSlno.enabled = !serials.empty();
  filling_ = true;
  cmbSlno.SetRows(serials);
  cmbSlno.SetText(serials.empty() ? "" : serials.front().text);
  filling_ = false;
  if (!serials.empty()) return cmbSlno_Change();
  ShowMonths(MonthsOfOneLoan(session_, year, holder->employee, Loan()));
}

void frmSepInt::cmbSlno_Change() {
  const BenefitHolder* holder = holders_.Active();
  if (filling_ || holder == nullptr || Year().empty() || !cmbSlno.MatchesList()) return;
  const BenefitYear year = BenefitYearOf(session_, Year());
  ShowMonths(MonthsOfSerial(session_, year, holder->employee, Loan(), Value(Val(cmbSlno.Text())).ToLong(),
                            PlainRate(session_, year.key).value_or(0)));
}

void frmSepInt::ShowMonths(const Statement& months) { months_.Show(ReadBenefitMonths(session_, months)); }

void frmSepInt::cmdInt_Click() {
  filling_ = true;
  for (ComboBox* box : {&cmbFinYear, &cmbLoan, &cmbSlno}) box->SetText("");
  filling_ = false;
  lblIntAmt.caption.clear();
  RegisterWindow(session_);
  session_.doors.benchmarkRates();
  FillBoxes();
  ListEmployees();
}

void frmSepInt::cmdUpdate_Click() {
  if (Year().empty()) return session_.Inform("Select Financial Year");
  if (holders_.Rows().empty()) return session_.Inform("No records found");
  RegisterWindow(session_);
  session_.doors.yearlyBenefit({Year(), Trim(search.txtSearch.Text())});
  FillBoxes();
  ListAndClickFirst();
}

}  // namespace ktl
