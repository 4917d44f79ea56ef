#include "instructions/modSIMaster.h"

#include <algorithm>

#include "common/amounts.h"
#include "frame/rights.h"
#include "frame/saved_box.h"
#include "frame/writing_buttons.h"
#include "frame/writing_turn.h"
#include "instructions/list_columns.h"
#include "instructions/type_rights.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr long kLoanFormCode = 1502;
constexpr int kPortInsOther = 12;

const char* Word(bool yes) { return yes ? "Yes" : "No"; }

std::string Flag(bool on) { return on ? "1" : "0"; }

std::string AmountText(const std::optional<double>& amount) {
  return amount ? clsGenCmn::FnStrConvertToCommaNumber(NumberText(*amount), 2) : "";
}

std::string PlainText(const std::optional<double>& number) { return number ? NumberText(*number) : ""; }

std::string PreferenceText(double siPref) { return siPref == 0 ? "" : NumberText(siPref); }

AuditField FieldOf(std::string label, const TextBox& box) {
  return {std::move(label), box.IsShown() ? box.Text() : "", box.tag};
}

AuditField FieldOf(std::string label, const CheckBox& box, bool value) {
  return {std::move(label), box.IsShown() ? Word(value) : "", box.tag.empty() ? "" : Word(box.tag == "1")};
}

AuditField OptionField(std::string label, const CheckBox& box, const TextBox& value) {
  return {std::move(label), box.Value() ? value.Text() : "", value.tag};
}

}  // namespace

modSIMaster::modSIMaster(Session& session, InstructionType type)
    : Screen("modSIMaster"),
      session_(session),
      type_(type),
      on_(session, *this, ErrorStyle::NumberFirst, "Error") {
  fmeConfig.Hold({chkMaxAmount, txtMaxAmount, chkMaxAllowed, txtMaxAllowed, chkRecEMI, txtRecEMI,
                  chkInterestRate, txtInterestRate, chkRedBal});
  txtSIName.maxLength = 50;
  for (TextBox* number : {&txtDedPref, &txtMaxAmount, &txtMaxAllowed, &txtRecEMI, &txtInterestRate})
    number->rightAligned = true;
  cmbSection.editable = false;
  ConnectHandlers();
  ConnectKeyFilters();
}

void modSIMaster::ConnectHandlers() {
  chkType.onClick = [this] { chkType_Click(); };
  for (CheckBox* box : {&chkTDSAppl, &chkMaxAmount, &chkMaxAllowed, &chkRecEMI, &chkInterestRate})
    box->onClick = [this] { EnableByTicks(); };
  fpgSIMaster.onRowClick = [this](std::size_t row, std::size_t) { fpgSIMaster_Click(row); };
  cmdNew.onClick = [this] { cmdNew_Click(); };
  cmdSave.onClick = on_(&modSIMaster::cmdSave_Click);
  cmdDelete.onClick = on_(&modSIMaster::cmdDelete_Click);
  cmdClose.onClick = [this] { Unload(); };
}

void modSIMaster::ConnectKeyFilters() {
  for (TextBox* box : {&txtSIName, &txtAccCode}) box->onLeave = [box] { box->SetText(Trim(box->Text())); };
  for (TextBox* box : {&txtDedPref, &txtRecEMI}) box->onKeyPress = clsGenCmn::FnIntAllowNumbersOnly;
  for (TextBox* box : {&txtMaxAmount, &txtMaxAllowed, &txtInterestRate})
    box->onKeyPress = [box](int key) { return clsGenCmn::FnIntAllowDoubleOnly(key, box->Text()); };
  txtMaxAmount.onLeave =
      on_([this] { txtMaxAmount.SetText(clsGenCmn::FnStrConvertToCommaNumber(txtMaxAmount.Text(), 2)); });
  txtMaxAllowed.onLeave =
      on_([this] { txtMaxAllowed.SetText(clsGenCmn::FnStrConvertToCommaNumber(txtMaxAllowed.Text(), 0)); });
}

void modSIMaster::Form_Load() {
  on_.Run([this] { OpenForm(); });
}

void modSIMaster::Form_Activate() {
  on_.Run([this] { ShowForType(); });
}

void modSIMaster::OpenForm() {
  caption_ = InstructionCaption(session_, type_);
  caption = caption_ + " Master";
  lblSIName.caption = caption_ + " Name";
  txtDedPref.toolTip =
      "Enter the order in which " + caption_ + " is to be considered for deduction in Salary Calculation.";
  ApplyTypeRights(session_, *this, type_);
  EnableWriting(session_, {&cmdSave, &cmdDelete}, WriteLock::OfUser);
  DescribeList();
  cmbSection.SetRows(ReadSections(session_));
  FillList();
  Clear();
}

void modSIMaster::ShowForType() {
  const InstructionType type = type_;
  const bool companyTds = clsCtrlDep(session_.data).FnBlnGetYesNo("TDSYN", "MAS_COMPANY");
  const bool withSection =
      companyTds && type >= InstructionType::Insurance && type <= InstructionType::GroupInsurance;
  chkTDSAppl.visible = withSection || (companyTds && type == InstructionType::Incentive);
  lblSection.visible = cmbSection.visible = withSection;
  lblDedPref.visible = txtDedPref.visible = IsAdvanceOrLoan(type);
  chkType.visible = IsAdvanceOrLoan(type);
  chkSBIInt.visible = session_.FormCode == kLoanFormCode;
  fmeConfig.visible = HasAdvancedOptions();
}

void modSIMaster::DescribeList() {
  using Row = InstructionMaster;
  const bool advanced = HasAdvancedOptions();
  const bool advLoan = IsAdvanceOrLoan(type_);
  const bool loanScreen = session_.FormCode == kLoanFormCode;
  const auto tick = [](const char* heading, bool hidden, bool Row::*flag, int width = 90) {
    return GridList<Row>::Column{{heading, CellType::Tick, width, hidden},
                                 [flag](const Row& row) { return Flag(row.*flag); }};
  };
  const auto number = [](const char* heading, bool hidden, auto textOf, auto Row::*value, int width = 90) {
    return GridList<Row>::Column{{heading, CellType::Number, width, hidden},
                                 [textOf, value](const Row& row) { return textOf(row.*value); }};
  };
  list_.SetColumns({
      {{caption_ + " Name", CellType::Text, 180}, &Row::siName},
      {{"Account Code", CellType::Text, 110}, &Row::accCode},
      tick("TDS", type_ == InstructionType::Loan, &Row::tdsYn, 50),
      {{"Section"}, &Row::section},
      number("Deduction Pref.", !advLoan, PreferenceText, &Row::siPref),
      number("Max. Limit", !advanced, AmountText, &Row::amtLimit, 110),
      number("Max. Allowed", !advanced, PlainText, &Row::allowLimit),
      number("Recovery EMI", !advanced, PlainText, &Row::emiRecCnt),
      number("Interest Rate", !advanced, PlainText, &Row::intrRate),
      tick("Reducing Balance", !advanced, &Row::reducingBalYn),
      tick("Separate P/I Acc", !advLoan, &Row::sepPiYn),
      tick("IFBYN", !advLoan || !loanScreen, &Row::sbiIfbYn),
  });
}

void modSIMaster::FillList() {
  shown_ = InstructionMasterRows(session_, type_);
  list_.Show(ReadInstructionMasters(session_, type_));
  fpgSIMaster.activeRow = kNoRow;
  clickedName_.clear();
}

void modSIMaster::chkType_Click() {
  if (!chkType.Value()) chkSBIInt.SetValue(false);
  EnableByTicks();
}

void modSIMaster::EnableByTicks() {
  lblSection.enabled = cmbSection.enabled = chkTDSAppl.Value();
  chkSBIInt.enabled = chkType.Value();
  txtMaxAmount.enabled = chkMaxAmount.Value();
  txtMaxAllowed.enabled = chkMaxAllowed.Value();
  txtRecEMI.enabled = chkRecEMI.Value();
  txtInterestRate.enabled = chkRedBal.enabled = chkInterestRate.Value();
}

void modSIMaster::Clear() {
  LoadFields({});
  for (Control* control : Controls())
    if (control->kind() == ControlKind::TextBox || control->kind() == ControlKind::CheckBox ||
        control->kind() == ControlKind::ComboBox)
      control->tag.clear();
  oldName_.clear();
}

// TDSYN of a hidden box is loaded too: saving a loan leaves its house-loan status as it was.
void modSIMaster::LoadFields(const InstructionMaster& master) {
  txtSIName.SetText(master.siName);
  txtAccCode.SetText(master.accCode);
  chkTDSAppl.SetValue(master.tdsYn);
  cmbSection.SetBoundText(master.tdsRefNo ? std::to_string(*master.tdsRefNo) : "");
  txtDedPref.SetText(PreferenceText(master.siPref));
  chkType.SetValue(master.sepPiYn);
  chkSBIInt.SetValue(master.sbiIfbYn);
  chkMaxAmount.SetValue(master.amtLimit.has_value());
  txtMaxAmount.SetText(AmountText(master.amtLimit));
  chkMaxAllowed.SetValue(master.allowLimit.has_value());
  txtMaxAllowed.SetText(PlainText(master.allowLimit));
  chkRecEMI.SetValue(master.emiRecCnt.has_value());
  txtRecEMI.SetText(PlainText(master.emiRecCnt));
  chkInterestRate.SetValue(master.intrRate.has_value());
  txtInterestRate.SetText(PlainText(master.intrRate));
  chkRedBal.SetValue(master.reducingBalYn);
  EnableByTicks();  // a value that did not change raised no click
}

void modSIMaster::NoteOldValues() {
  for (TextBox* box :
       {&txtSIName, &txtAccCode, &txtDedPref, &txtMaxAmount, &txtMaxAllowed, &txtRecEMI, &txtInterestRate})
    box->tag = box->Text();
  for (CheckBox* box : {&chkTDSAppl, &chkType, &chkSBIInt, &chkRedBal}) box->tag = Flag(box->Value());
  cmbSection.tag = cmbSection.Text();
}

InstructionMaster modSIMaster::FromFields() const {
  const auto number = [](const TextBox& box) { return clsGenCmn::FnDblTrimVal(box.Text()); };
  InstructionMaster master{
      .type = type_,
      .siName = Trim(txtSIName.Text()),
      .accCode = Trim(txtAccCode.Text()),
      .tdsYn = chkTDSAppl.Value(),
      .siPref = number(txtDedPref),
      .sepPiYn = chkType.Value(),
      .sbiIfbYn = chkSBIInt.Value(),
      .reducingBalYn = chkInterestRate.Value() && chkRedBal.Value(),
  };
  const std::string section = cmbSection.BoundText();
  if (master.tdsYn && !section.empty()) master.tdsRefNo = static_cast<long>(Val(section));
  if (chkMaxAmount.Value()) master.amtLimit = number(txtMaxAmount);
  if (chkMaxAllowed.Value()) master.allowLimit = number(txtMaxAllowed);
  if (chkRecEMI.Value()) master.emiRecCnt = number(txtRecEMI);
  if (chkInterestRate.Value()) master.intrRate = number(txtInterestRate);
  return master;
}

void modSIMaster::fpgSIMaster_Click(std::size_t row) {
  const InstructionMaster& master = list_.Rows()[row];
  clickedName_ = oldName_ = master.siName;
  LoadFields(master);
  NoteOldValues();
}

void modSIMaster::cmdNew_Click() {
  Clear();
  SetFocus(txtSIName);
}

void modSIMaster::cmdSave_Click() {
  if (FnBlnPermitted(session_, cmdSave)) return;
  const InstructionMaster master = FromFields();
  const bool advanced = HasAdvancedOptions();
  if (const auto refusal = FindMasterRefusal(session_, master, oldName_, caption_, advanced))
    return RefuseSave(*refusal);
  if (!MayDropHouseLoan(master)) return;
  // The house-loan details are gone by now, whatever the deduction preference comes to.
  if (const auto refusal = FindPreferenceRefusal(session_, master, oldName_, caption_))
    return RefuseSave(*refusal);

  if (!UnlessChanged(
          session_, [&] { WriteInstructionMaster(session_, master, oldName_, advanced, shown_); },
          [this] { ShowAnew(); }))
    return;
  oldName_ = master.siName;  // a failure from here on leaves the written row in the fields
  shown_ = InstructionMasterRows(session_, type_);
  if (!IsAdvanceOrLoan(type_) && chkTDSAppl.IsShown())
    MarkInstructionsForPorting(session_, type_, master.siName, FactsOf(type_).masterPortCode);
  WriteAudit(" Master Created/Updated");
  ShowSaved(session_);
  ShowAnew();
}

void modSIMaster::ShowAnew() {
  FillList();
  Clear();
}

void modSIMaster::RefuseSave(const MasterRefusal& refusal) {
  Refuse(session_, *this, refusal,
         {{MasterField::Name, &txtSIName},
          {MasterField::MaxAmount, &txtMaxAmount},
          {MasterField::MaxAllowed, &txtMaxAllowed},
          {MasterField::RecEMI, &txtRecEMI},
          {MasterField::InterestRate, &txtInterestRate},
          {MasterField::Section, &cmbSection},
          {MasterField::DedPref, &txtDedPref}});
}

bool modSIMaster::MayDropHouseLoan(const InstructionMaster& master) {
  if (master.type != InstructionType::Loan || master.tdsYn || !HasHouseLoanDetails(session_, master))
    return true;
  if (!session_.desk.Confirm("TDS details for " + master.siName +
                                 " found.\r\nRemoving 'House Loan' status will remove these details.\r\n"
                                 "Do you want to continue?",
                             session_.title))
    return false;
  DeleteHouseLoanDetails(session_, master);
  return true;
}

void modSIMaster::cmdDelete_Click() {
  if (FnBlnPermitted(session_, cmdDelete) || clickedName_.empty()) return;
  const auto clicked = std::ranges::find(list_.Rows(), clickedName_, &InstructionMaster::siName);
  const auto row = static_cast<std::size_t>(clicked - list_.Rows().begin());
  if (IsMasterInUse(session_, type_, clickedName_)) {
    fpgSIMaster.PaintRow(row, kNoColour);
    session_.Inform("Entries found in " + caption_ + " details for selected " + caption_ +
                    ".\r\nCannot delete.");
    return;
  }
  fpgSIMaster.PaintRow(row, kAboutToGoColour);
  const bool confirmed = session_.desk.Confirm("Do you want to delete selected record?", session_.title);
  fpgSIMaster.PaintRow(row, kNoColour);
  if (!confirmed) return;

  if (WriteInTurn(
          session_, [this] { return InstructionMasterRows(session_, type_); }, shown_,
          [&] { DeleteName(*clicked); }, [this] { ShowAnew(); }))
    ShowAnew();
}

void modSIMaster::DeleteName(const InstructionMaster& master) {
  if (IsMasterInUse(session_, type_, clickedName_)) throw ChangedMeanwhile();
  // A name without instructions marks nobody; the code differs from the one of saving.
  if (type_ == InstructionType::Incentive && chkTDSAppl.IsShown())
    MarkInstructionsForPorting(session_, type_, clickedName_, kPortInsOther);
  DeleteInstructionMaster(session_, type_, clickedName_);
  LoadFields(master);
  WriteAudit(" Master Deleted");
}

void modSIMaster::WriteAudit(const std::string& deed) {
  std::string detail = ":::SI Type = " + caption_ + AuditPairs(AuditFields());
  if (HasAdvancedOptions()) detail += "::Advance Options" + AuditPairs(AdvancedAuditFields());
  AuditInstruction(session_, 0, caption_ + deed, detail);
}

std::vector<AuditField> modSIMaster::AuditFields() const {
  const bool hasSection = cmbSection.IsShown() && chkTDSAppl.Value();
  return {
      FieldOf("SI Name", txtSIName),
      FieldOf("Account Code", txtAccCode),
      FieldOf("TDS Applicable", chkTDSAppl, chkTDSAppl.Value()),
      {"Section", hasSection ? cmbSection.Text() : "", cmbSection.tag},
      FieldOf("Deduction Pref.", txtDedPref),
      FieldOf(chkType.caption, chkType, chkType.Value()),
      FieldOf(chkSBIInt.caption, chkSBIInt, chkSBIInt.Value()),
  };
}

std::vector<AuditField> modSIMaster::AdvancedAuditFields() const {
  return {
      OptionField("Maximum Amount", chkMaxAmount, txtMaxAmount),
      OptionField("Maximum Allowed", chkMaxAllowed, txtMaxAllowed),
      OptionField("Recovery EMI", chkRecEMI, txtRecEMI),
      OptionField("Interest Rate", chkInterestRate, txtInterestRate),
      FieldOf(chkRedBal.caption, chkRedBal, chkInterestRate.Value() && chkRedBal.Value()),
  };
}

}  // namespace ktl
