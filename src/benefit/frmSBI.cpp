#include "benefit/frmSBI.h"

#include <algorithm>

#include "benefit/amount_column.h"
#include "frame/fin_years.h"
#include "frame/handler_guard.h"
#include "frame/session.h"
#include "frame/writing_buttons.h"
#include "frame/writing_turn.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr std::size_t kLongestRemarks = 50;

}  // namespace

frmSBI::frmSBI(Session& session) : Screen("frmSBI"), session_(session) {
  caption = "Benchmark Interest Rate";
  fmeLoans.Hold({fpgLoan});
  txtIntid.locked = true;
  txtIntAmt.rightAligned = true;
  txtLoanType.maxLength = kLongestRemarks;
  const HandlerGuard on(session_, *this, ErrorStyle::NumberFirst);
  cmbFinYear.onChange = on(&frmSBI::cmbFinYear_Change);
  txtIntAmt.onKeyPress = [this](int key) {
    return key == '.' && txtIntAmt.Text().find('.') != std::string::npos ? 0 : key;
  };
  txtIntAmt.onLeave = on(&frmSBI::txtIntAmt_LostFocus);
  fpgInterest.onRowClick = on(&frmSBI::fpgInterest_Click);
  cmdNew.onClick = on(&frmSBI::cmdNew_Click);
  cmdSave.onClick = on(&frmSBI::cmdSave_Click);
  cmdDelete.onClick = on(&frmSBI::cmdDelete_Click);
  cmdClose.onClick = [this] { Unload(); };
}

void frmSBI::Form_Load() {
  session_.ActiveForm = this;
  SetColumns();
  ShowAsDefault(true);
  EnableWriting(session_, {&cmdSave, &cmdDelete});
  RunGuarded(session_, ErrorStyle::NumberFirst, "", [this] {
    cmbFinYear.SetRows(ReadFinYears(session_));
    FillRates();
    FillLoans(nullptr);
    txtIntid.SetText(std::to_string(NextRateId(session_)));
  });
}

void frmSBI::SetColumns() {
  rates_.SetColumns({
      {{"Financial Year", CellType::Text, 120}, &RateRow::YearText},
      {{"Interest Rate", CellType::Number, 100}, TwoPlaces(&RateRow::rate)},
      {{"IntID", CellType::Number, 60}, [](const RateRow& row) { return std::to_string(row.id); }},
      {{"Remarks", CellType::Text, 140}, &RateRow::remarks},
      {{"Loan Name", CellType::Text, 320}, &RateRow::loans},
  });
  loans_.paint = [this](std::size_t line, const RateLoan& loan) {
    fpgLoan.At(line, kTick).locked = loan.taken || session_.ReadOnlyUser;
  };
  loans_.SetColumns({
      {{" ", CellType::Tick, 32, false, false}, [](const RateLoan& loan) { return loan.ticked ? "1" : "0"; }},
      {{"Loan ID", CellType::Number, 70}, &RateLoan::number},
      {{"Loan Name", CellType::Text, 220}, &RateLoan::name},
  });
}

void frmSBI::FillRates() {
  rates_.Show(ReadRates(session_));
  fpgInterest.activeRow = rates_.Rows().empty() ? kNoRow : 0;
}

void frmSBI::FillLoans(const RateRow* of) {
  const std::string year = Left(Year(), 4);
  std::vector<RateLoan> loans = ReadRateLoans(session_, year, of ? of->remarks : "", Id());
  for (RateLoan& loan : loans) loan.ticked = loan.ticked && of != nullptr;
  loans_.Show(std::move(loans));
  shown_ = RatesAsShown(session_, year);
}

void frmSBI::ShowAsDefault(bool isDefault) {
  lblLoanType.visible = !isDefault;
  txtLoanType.visible = !isDefault;
  fmeLoans.enabled = !isDefault;
}

long frmSBI::Id() const { return Value(Val(txtIntid.Text())).ToLong(); }

void frmSBI::cmbFinYear_Change() {
  txtLoanType.SetText("");
  txtIntid.SetText(std::to_string(NextRateId(session_)));
  isNew_ = true;
  ShowAsDefault(Year().empty() || !HasRates(session_, Left(Year(), 4)));
  FillLoans(nullptr);
}

void frmSBI::txtIntAmt_LostFocus() {
  if (Trim(txtIntAmt.Text()).empty()) return;
  if (const auto rate = ParseNumber(Trim(txtIntAmt.Text())))
    return txtIntAmt.SetText(FormatNumber(*rate, "0.00"));
  txtIntAmt.SetText("");
  SetFocus(txtIntAmt);
}

void frmSBI::fpgInterest_Click(std::size_t row, std::size_t) {
  const RateRow* const clicked = rates_.At(row);
  if (clicked == nullptr) return;
  ChooseYear(clicked->YearText());
  txtIntAmt.SetText(FormatNumber(clicked->rate, "0.00"));
  txtIntAmt.tag = txtIntAmt.Text();
  txtIntid.SetText(std::to_string(clicked->id));
  txtLoanType.SetText(clicked->remarks);
  isNew_ = false;
  ShowAsDefault(clicked->loans.empty());
  FillLoans(clicked);
}

// The year of a rate can be one that the company has no months of, or none any more.
void frmSBI::ChooseYear(const std::string& year) {
  std::vector<ListRow> years = cmbFinYear.Rows();
  if (std::ranges::find(years, year, &ListRow::text) == years.end()) {
    years.push_back({year, year});
    cmbFinYear.SetRows(years);
  }
  cmbFinYear.SetText(year);
}

void frmSBI::cmdNew_Click() {
  cmbFinYear.SetText("");
  txtIntAmt.SetText("");
  txtIntAmt.tag.clear();
  txtLoanType.SetText("");
  ShowAsDefault(true);
  txtIntid.SetText(std::to_string(NextRateId(session_)));
  isNew_ = true;
  FillLoans(nullptr);
}

TypedRate frmSBI::Typed() {
  txtIntAmt_LostFocus();  // the shortcut of a button leaves the field no time to be left
  TypedRate typed{
      .yearText = Year(), .rate = txtIntAmt.Text(), .loans = loans_.Rows(), .before = txtIntAmt.tag};
  if (txtLoanType.visible) typed.remarks = txtLoanType.Text();
  for (std::size_t line = 0; line < typed.loans.size(); ++line)
    typed.loans[line].ticked = fpgLoan.IsTicked(line, kTick);
  return typed;
}

bool frmSBI::Refuse(const RateRefusal& refusal) {
  if (refusal.field == RateField::Year) cmbFinYear.SetText("");
  return ktl::Refuse(session_, *this, refusal,
                     {{RateField::Year, &cmbFinYear},
                      {RateField::Rate, &txtIntAmt},
                      {RateField::Remarks, &txtLoanType},
                      {RateField::Loans, &fpgLoan}});
}

void frmSBI::cmdSave_Click() {
  const TypedRate typed = Typed();
  if (const auto refusal = CheckRate(typed, lblFinancialYear.caption)) {
    Refuse(*refusal);
    return;
  }
  const bool written = WriteInTurn(
      session_, [&] { return RatesAsShown(session_, typed.Year()); }, shown_,
      [&] { SaveRate(session_, typed, Id(), isNew_); }, [this] { ShowAnew(); });
  if (!written) return;
  session_.desk.NoteSaved();
  ShowAnew();
}

void frmSBI::cmdDelete_Click() {
  const TypedRate typed = Typed();
  if (Trim(typed.rate).empty() || typed.yearText.empty()) {
    session_.Inform("Select Record to Delete");
    return SetFocus(fpgInterest);
  }
  const std::string shown = RatesAsShown(session_, typed.Year());
  const long id = FindRate(session_, typed, txtLoanType.Text());
  if (id == 0) return session_.Inform("No Record Found to Delete ");
  if (!session_.desk.Confirm("Do you want to Delete", session_.title)) return;
  WriteInTurn(
      session_, [&] { return RatesAsShown(session_, typed.Year()); }, shown,
      [&] { DeleteRate(session_, typed, id); }, [] {});
  ShowAnew();
}

void frmSBI::ShowAnew() {
  FillRates();
  cmdNew_Click();
}

}  // namespace ktl
