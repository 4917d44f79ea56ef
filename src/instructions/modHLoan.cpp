#include "instructions/modHLoan.h"

#include "common/amounts.h"
#include "frame/fin_years.h"
#include "frame/handler_guard.h"
#include "frame/number_fields.h"
#include "frame/saved_box.h"
#include "frame/session.h"
#include "frame/writing_buttons.h"
#include "frame/writing_turn.h"
#include "instructions/list_columns.h"
#include "runtime/numbers.h"
#include "workbook/export_menu.h"

namespace ktl {

namespace {

constexpr Colour kDisabledColour = 0xA0A0A0;
constexpr std::size_t kLongestAmount = 13;  // 9999999999.99

double AmountOf(const TextBox& box) { return RoundByPattern(clsGenCmn::FnDblTrimVal(box.Text()), "0.00"); }

}  // namespace

modHLoan::modHLoan(Session& session, InstructionParent& parent)
    : Screen("modHLoan"), session_(session), parent_(parent), key_(parent.Key()) {
  caption = "House Loan Details - " + parent.Subject().employee;
  fmeHouse.Hold({lblHAddr, txtHAddr, lblHType, cmbHType, lblNote, optCapBorYes, optCapBorNo});
  fmeYear.Hold({lblFinYear, cmbFinYear, lblPrcpAmt, txtPrcpAmt, lblInterestAmt, txtInterestAmt, lblGross,
                txtGross, lblMTax, txtMTax});
  TakeAmounts({&txtPrcpAmt, &txtInterestAmt, &txtGross, &txtMTax});
  for (TextBox* box : {&txtPrcpAmt, &txtInterestAmt, &txtGross, &txtMTax}) {
    box->maxLength = kLongestAmount;
    box->onLeave = [box] { box->SetText(clsGenCmn::FnStrConvertToNumber(box->Text(), 2)); };
  }
  ConnectHandlers();
}

void modHLoan::ConnectHandlers() {
  const HandlerGuard on(session_, *this, ErrorStyle::DescriptionOnly);
  cmbHType.onChange = on(&modHLoan::cmbHType_Change);
  cmdSave.onClick = on(&modHLoan::cmdSave_Click);
  cmdDelete.onClick = on(&modHLoan::cmdDelete_Click);
  cmdAdd.onClick = on(&modHLoan::cmdAdd_Click);
  cmdRemove.onClick = on(&modHLoan::cmdRemove_Click);
  fpgEMIDetail.onRowClick = on(&modHLoan::fpgEMIDetail_Click);
  cmdClose.onClick = [this] { Unload(); };
  BindExport(session_, mnuExport, fpgEMIDetail, [] { return ExportWords{"House Loan", "The list"}; });
}

// The caption names the employee already.
Subject modHLoan::Subject() const {
  ktl::Subject subject = parent_.Subject();
  subject.employee.clear();
  return subject;
}

void modHLoan::Form_Load() {
  SetColumns();
  EnableWriting(session_, {&cmdSave, &cmdDelete, &cmdAdd, &cmdRemove});
  cmbHType_Change();
  RunGuarded(session_, ErrorStyle::DescriptionOnly, "", [this] {
    cmbHType.SetRows(ReadHouseTypes(session_));
    ShowAll();
  });
}

void modHLoan::SetColumns() {
  using Row = HouseYear;
  years_.SetColumns({
      {{"Financial Year", CellType::Text, 120}, [](const Row& row) { return HouseYearText(row.year); }},
      {{"Principle Amount", CellType::Number, 140}, Amount(&Row::principal)},
      {{"Interest Amount", CellType::Number, 140}, Amount(&Row::interest)},
      {{"Gross Annual Value", CellType::Number, 150}, Amount(&Row::annualValue)},
      {{"Muncipal tax Paid", CellType::Number, 140}, Amount(&Row::municipalTax)},
  });
  fpgEMIDetail.summed = {kPrincipal, kInterest, kAnnualValue, kMunicipalTax};
}

void modHLoan::ShowAll() {
  shown_ = HouseRows(session_, key_);
  ShowHouse();
  ShowYears();
}

void modHLoan::ShowHouse() {
  const HouseLoan house = ReadHouseLoan(session_, key_).value_or(HouseLoan{});
  txtHAddr.SetText(house.address);
  cmbHType.SetText(HouseTypeText(house.type));
  (house.capitalBorrowed ? optCapBorYes : optCapBorNo).SetValue(true);
}

void modHLoan::ShowYears() {
  cmbFinYear.SetRows(ReadYearsOfLoan(session_, key_));
  years_.Show(ReadHouseYears(session_, key_));
  fpgEMIDetail.activeRow = kNoRow;
}

void modHLoan::EmptyAmounts() {
  for (TextBox* box : {&txtPrcpAmt, &txtInterestAmt, &txtGross, &txtMTax}) box->SetText("");
}

HouseType modHLoan::Type() const {
  return static_cast<HouseType>(static_cast<int>(clsGenCmn::FnDblTrimVal(cmbHType.BoundText())));
}

// A house of one's own has the question, the others have a value and a tax.
void modHLoan::cmbHType_Change() {
  const bool own = Type() == HouseType::SelfOccupied;
  optCapBorYes.enabled = optCapBorNo.enabled = own;
  lblNote.foreColour = own ? kNoColour : kDisabledColour;
  for (TextBox* box : {&txtGross, &txtMTax}) {
    if (own) box->SetText("");
    box->enabled = !own;
  }
}

bool modHLoan::RefuseHouse(const HouseRefusal& refusal) {
  return Refuse(session_, *this, refusal,
                {{HouseField::Type, &cmbHType},
                 {HouseField::Year, &cmbFinYear},
                 {HouseField::Principal, &txtPrcpAmt},
                 {HouseField::Interest, &txtInterestAmt}});
}

bool modHLoan::Write(const std::function<void()>& write) {
  return WriteInTurn(
      session_, [this] { return HouseRows(session_, key_); }, shown_, write, [this] { ShowAll(); });
}

void modHLoan::cmdSave_Click() {
  const HouseLoan house{txtHAddr.Text(), Type(), optCapBorYes.Value()};
  if (const auto refusal = CheckHouseLoan(session_, key_, house)) {
    RefuseHouse(*refusal);
    return;
  }
  if (!Write([&] { WriteHouseLoan(session_, key_, house); })) return;
  shown_ = HouseRows(session_, key_);
  ShowSaved(session_);
}

void modHLoan::cmdDelete_Click() {
  if (const auto refusal = CheckHouseDelete(session_, key_)) {
    RefuseHouse(*refusal);
    return;
  }
  if (!session_.desk.Confirm("Do you want to delete house loan details?", session_.title)) return;
  if (!Write([this] { DeleteHouseLoan(session_, key_); })) return;
  EmptyAmounts();
  cmbFinYear.SetText("");
  ShowAll();
}

HouseYear modHLoan::TypedYear() const {
  return {cmbFinYear.MatchesList() ? FinYearOf(cmbFinYear.Text()) : 0, AmountOf(txtPrcpAmt),
          AmountOf(txtInterestAmt), AmountOf(txtGross), AmountOf(txtMTax)};
}

void modHLoan::cmdAdd_Click() {
  const HouseYear year = TypedYear();
  if (const auto refusal = CheckHouseYear(session_, key_, year)) {
    RefuseHouse(*refusal);
    return;
  }
  if (!Write([&] { WriteHouseYear(session_, key_, year); })) return;
  ShowSaved(session_);
  EmptyAmounts();
  shown_ = HouseRows(session_, key_);
  ShowYears();
}

void modHLoan::cmdRemove_Click() {
  if (years_.Rows().empty()) return session_.Inform("No records to delete.");
  const HouseYear* const picked = years_.Active();
  if (picked == nullptr) return session_.Inform("Select record to remove.");
  const long year = picked->year;
  if (!session_.desk.Confirm("Do you want to remove selected record?", session_.title)) return;
  if (!Write([&] { RemoveHouseYear(session_, key_, year); })) return;
  shown_ = HouseRows(session_, key_);
  ShowYears();
}

void modHLoan::fpgEMIDetail_Click(std::size_t row, std::size_t) {
  const HouseYear* const year = years_.At(row);
  if (year == nullptr) return;
  cmbFinYear.SetText(HouseYearText(year->year));
  txtPrcpAmt.SetText(ShownAmount(year->principal));
  txtInterestAmt.SetText(ShownAmount(year->interest));
  txtGross.SetText(ShownAmount(year->annualValue));
  txtMTax.SetText(ShownAmount(year->municipalTax));
}

}  // namespace ktl
