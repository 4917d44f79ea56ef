#include "instructions/modSIMaster.h"

#include <algorithm>
#include <map>

#include "common/amounts.h"
#include "database/recordset.h"
#include "frame/error_box.h"
#include "frame/rights.h"
#include "frame/saved_box.h"
#include "instructions/type_rights.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr long kLoanFormCode = 1502;
constexpr Colour kDeleteColour = 0xFFE0E0;
constexpr int kPortInsOther = 12;
constexpr int kPortInsurance = 13;

const char* Word(bool yes) { return yes ? "Yes" : "No"; }

std::string Flag(bool on) { return on ? "1" : "0"; }

std::string AmountText(const std::optional<double>& amount) {
  return amount ? clsGenCmn::FnStrConvertToCommaNumber(NumberText(*amount), 2) : "";
}

std::string CountText(const std::optional<long>& count) { return count ? std::to_string(*count) : ""; }

std::string RateText(const std::optional<double>& rate) { return rate ? NumberText(*rate) : ""; }

std::string PreferenceText(long siPref) { return siPref == 0 ? "" : std::to_string(siPref); }

long WholeNumber(const std::string& text) { return Value(clsGenCmn::FnDblTrimVal(text)).ToLong(); }

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
    : Screen("modSIMaster"), session_(session), type_(type) {
  for (Control* control : std::initializer_list<Control*>{&chkMaxAmount, &txtMaxAmount, &chkMaxAllowed,
                                                          &txtMaxAllowed, &chkRecEMI, &txtRecEMI,
                                                          &chkInterestRate, &txtInterestRate, &chkRedBal})
    control->container = &fmeConfig;
  txtSIName.maxLength = 50;
  for (TextBox* number : {&txtDedPref, &txtMaxAmount, &txtMaxAllowed, &txtRecEMI, &txtInterestRate})
    number->rightAligned = true;
  cmbSection.editable = false;
  ConnectHandlers();
  ConnectKeyFilters();
}

void modSIMaster::ConnectHandlers() {
  chkTDSAppl.onClick = [this] { chkTDSAppl_Click(); };
  chkType.onClick = [this] { chkType_Click(); };
  chkMaxAmount.onClick = [this] { chkMaxAmount_Click(); };
  chkMaxAllowed.onClick = [this] { chkMaxAllowed_Click(); };
  chkRecEMI.onClick = [this] { chkRecEMI_Click(); };
  chkInterestRate.onClick = [this] { chkInterestRate_Click(); };
  fpgSIMaster.onRowClick = [this](std::size_t row, std::size_t) { fpgSIMaster_Click(row); };
  cmdNew.onClick = [this] { cmdNew_Click(); };
  cmdSave.onClick = [this] { cmdSave_Click(); };
  cmdDelete.onClick = [this] { cmdDelete_Click(); };
  cmdClose.onClick = [this] { Unload(); };
}

void modSIMaster::ConnectKeyFilters() {
  for (TextBox* box : {&txtSIName, &txtAccCode}) box->onLeave = [box] { box->SetText(Trim(box->Text())); };
  for (TextBox* box : {&txtDedPref, &txtRecEMI}) box->onKeyPress = clsGenCmn::FnIntAllowNumbersOnly;
  for (TextBox* box : {&txtMaxAmount, &txtMaxAllowed, &txtInterestRate})
    box->onKeyPress = [box](int key) { return clsGenCmn::FnIntAllowDoubleOnly(key, box->Text()); };
  txtMaxAmount.onLeave = [this] {
    txtMaxAmount.SetText(clsGenCmn::FnStrConvertToCommaNumber(txtMaxAmount.Text(), 2));
  };
  txtMaxAllowed.onLeave = [this] {
    txtMaxAllowed.SetText(clsGenCmn::FnStrConvertToCommaNumber(txtMaxAllowed.Text(), 0));
  };
}

Handler modSIMaster::Guarded(void (modSIMaster::*work)()) {
  return WithErrorBox(
      session_, [this, work] { (this->*work)(); }, "Error");
}

void modSIMaster::Form_Load() { Guarded (&modSIMaster::OpenForm)(); }

void modSIMaster::Form_Activate() { Guarded (&modSIMaster::ShowForType)(); }

void modSIMaster::OpenForm() {
  caption_ = InstructionCaption(session_, type_);
  caption = caption_ + " Master";
  lblSIName.caption = caption_ + " Name";
  txtDedPref.toolTip =
      "Enter the order in which " + caption_ + " is to be considered for deduction in Salary Calculation.";
  ApplyTypeRights(session_, *this, type_);
  SetUpGrid();
  FillSections();
  FillGrid();
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

void modSIMaster::SetUpGrid() {
  const InstructionType type = type_;
  const bool advanced = HasAdvancedOptions();
  const bool advLoan = IsAdvanceOrLoan(type);
  const bool loanScreen = session_.FormCode == kLoanFormCode;
  fpgSIMaster.columns = {
      {.caption = caption_ + " Name", .width = 180},
      {.caption = "Account Code", .width = 110},
      {.caption = "TDS", .type = CellType::Tick, .width = 50, .hidden = type == InstructionType::Loan},
      {.caption = "Section"},
      {.caption = "Deduction Pref.", .type = CellType::Number, .hidden = !advLoan},
      {.caption = "Max. Limit", .type = CellType::Number, .width = 110, .hidden = !advanced},
      {.caption = "Max. Allowed", .type = CellType::Number, .hidden = !advanced},
      {.caption = "Recovery EMI", .type = CellType::Number, .hidden = !advanced},
      {.caption = "Interest Rate", .type = CellType::Number, .hidden = !advanced},
      {.caption = "Reducing Balance", .type = CellType::Tick, .hidden = !advanced},
      {.caption = "Separate P/I Acc", .type = CellType::Tick, .hidden = !advLoan},
      {.caption = "IFBYN", .type = CellType::Tick, .hidden = !advLoan || !loanScreen},
  };
}

void modSIMaster::FillSections() {
  std::vector<ListRow> sections;
  Recordset rows(session_.Cn, "SELECT TDSREFNO, TDSREF FROM MAS_TDSREF WHERE TYPEID In(2) and TDSREFNO <> 8");
  for (; !rows.Eof(); rows.MoveNext())
    sections.push_back({rows["TDSREF"].TextOrEmpty(), rows["TDSREFNO"].TextOrEmpty()});
  cmbSection.SetRows(std::move(sections));
}

void modSIMaster::FillGrid() {
  masters_ = ReadInstructionMasters(session_, type_);
  fpgSIMaster.Clear();
  fpgSIMaster.activeRow = kNoRow;
  clickedName_.clear();
  std::map<long, std::string> sections;
  for (const InstructionMaster& master : masters_) {
    std::string section;
    if (master.tdsRefNo) {
      const auto [place, isNew] = sections.try_emplace(*master.tdsRefNo);
      if (isNew) place->second = SectionName(*master.tdsRefNo);
      section = place->second;
    }
    AddGridRow(master, section);
  }
}

std::string modSIMaster::SectionName(long tdsRefNo) {
  return session_.data
      .FnVarGetDbValue("Select TDSREF From MAS_TDSREF Where TDSREFNO = " + std::to_string(tdsRefNo), "")
      .ToText();
}

void modSIMaster::AddGridRow(const InstructionMaster& master, const std::string& section) {
  const std::size_t row = fpgSIMaster.AddRow();
  const auto show = [&](Column column, std::string text) {
    fpgSIMaster.At(row, column).text = std::move(text);
  };
  show(ColName, master.siName);
  show(ColAccountCode, master.accCode);
  show(ColTds, Flag(master.tdsYn));
  show(ColSection, section);
  show(ColDeductionPref, PreferenceText(master.siPref));
  show(ColMaxLimit, AmountText(master.amtLimit));
  show(ColMaxAllowed, CountText(master.allowLimit));
  show(ColRecoveryEMI, CountText(master.emiRecCnt));
  show(ColInterestRate, RateText(master.intrRate));
  show(ColReducingBalance, Flag(master.reducingBalYn));
  show(ColSeparatePI, Flag(master.sepPiYn));
  show(ColIFBYN, Flag(master.sbiIfbYn));
}

void modSIMaster::chkTDSAppl_Click() { lblSection.enabled = cmbSection.enabled = chkTDSAppl.Value(); }

void modSIMaster::chkType_Click() {
  if (!chkType.Value()) chkSBIInt.SetValue(false);
  chkSBIInt.enabled = chkType.Value();
}

void modSIMaster::chkMaxAmount_Click() { txtMaxAmount.enabled = chkMaxAmount.Value(); }

void modSIMaster::chkMaxAllowed_Click() { txtMaxAllowed.enabled = chkMaxAllowed.Value(); }

void modSIMaster::chkRecEMI_Click() { txtRecEMI.enabled = chkRecEMI.Value(); }

void modSIMaster::chkInterestRate_Click() {
  txtInterestRate.enabled = chkRedBal.enabled = chkInterestRate.Value();
}

void modSIMaster::Clear() {
  LoadFields({});
  for (Control* control : Controls()) {
    if (control->kind() == ControlKind::TextBox || control->kind() == ControlKind::CheckBox ||
        control->kind() == ControlKind::ComboBox)
      control->tag.clear();
  }
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
  txtMaxAllowed.SetText(CountText(master.allowLimit));
  chkRecEMI.SetValue(master.emiRecCnt.has_value());
  txtRecEMI.SetText(CountText(master.emiRecCnt));
  chkInterestRate.SetValue(master.intrRate.has_value());
  txtInterestRate.SetText(RateText(master.intrRate));
  chkRedBal.SetValue(master.reducingBalYn);
  // A value that did not change raised no click.
  chkTDSAppl_Click();
  chkSBIInt.enabled = chkType.Value();
  chkMaxAmount_Click();
  chkMaxAllowed_Click();
  chkRecEMI_Click();
  chkInterestRate_Click();
}

void modSIMaster::NoteOldValues() {
  for (TextBox* box :
       {&txtSIName, &txtAccCode, &txtDedPref, &txtMaxAmount, &txtMaxAllowed, &txtRecEMI, &txtInterestRate})
    box->tag = box->Text();
  for (CheckBox* box : {&chkTDSAppl, &chkType, &chkSBIInt, &chkRedBal}) box->tag = Flag(box->Value());
  cmbSection.tag = cmbSection.Text();
}

InstructionMaster modSIMaster::FromFields() const {
  InstructionMaster master{
      .type = type_,
      .siName = Trim(txtSIName.Text()),
      .accCode = Trim(txtAccCode.Text()),
      .tdsYn = chkTDSAppl.Value(),
      .siPref = WholeNumber(txtDedPref.Text()),
      .sepPiYn = chkType.Value(),
      .sbiIfbYn = chkSBIInt.Value(),
      .reducingBalYn = chkInterestRate.Value() && chkRedBal.Value(),
  };
  const std::string section = cmbSection.BoundText();
  if (master.tdsYn && !section.empty()) master.tdsRefNo = WholeNumber(section);
  if (chkMaxAmount.Value()) master.amtLimit = clsGenCmn::FnDblTrimVal(txtMaxAmount.Text());
  if (chkMaxAllowed.Value()) master.allowLimit = WholeNumber(txtMaxAllowed.Text());
  if (chkRecEMI.Value()) master.emiRecCnt = WholeNumber(txtRecEMI.Text());
  if (chkInterestRate.Value()) master.intrRate = clsGenCmn::FnDblTrimVal(txtInterestRate.Text());
  return master;
}

void modSIMaster::fpgSIMaster_Click(std::size_t row) {
  const InstructionMaster& master = masters_.at(row);
  clickedName_ = oldName_ = master.siName;
  LoadFields(master);
  NoteOldValues();
}

void modSIMaster::cmdNew_Click() {
  Clear();
  SetFocus(txtSIName);
}

void modSIMaster::cmdSave_Click() { Guarded (&modSIMaster::Save)(); }

void modSIMaster::Save() {
  if (FnBlnPermitted(session_, cmdSave)) return;
  const InstructionMaster master = FromFields();
  const bool advanced = HasAdvancedOptions();
  if (const auto refusal = FindMasterRefusal(session_, master, oldName_, caption_, advanced))
    return Refuse(*refusal);
  if (!MayDropHouseLoan(master)) return;
  // The house-loan details are gone by now, whatever the deduction preference comes to.
  if (const auto refusal = FindPreferenceRefusal(session_, master, oldName_, caption_))
    return Refuse(*refusal);

  WriteInstructionMaster(session_, master, oldName_, advanced);
  oldName_ = master.siName;  // a failure from here on leaves the written row in the fields
  if (!IsAdvanceOrLoan(type_) && chkTDSAppl.IsShown())
    MarkInstructionsForPorting(session_, type_, master.siName,
                               type_ == InstructionType::Incentive ? kPortInsurance : kPortInsOther);
  WriteAudit(" Master Created/Updated");
  ShowSaved(session_);
  FillGrid();
  Clear();
}

void modSIMaster::Refuse(const MasterRefusal& refusal) {
  session_.Inform(refusal.text);
  switch (refusal.field) {
    case MasterField::Name:
      return SetFocus(txtSIName);
    case MasterField::MaxAmount:
      return SetFocus(txtMaxAmount);
    case MasterField::MaxAllowed:
      return SetFocus(txtMaxAllowed);
    case MasterField::RecEMI:
      return SetFocus(txtRecEMI);
    case MasterField::InterestRate:
      return SetFocus(txtInterestRate);
    case MasterField::Section:
      return SetFocus(cmbSection);
    case MasterField::DedPref:
      return SetFocus(txtDedPref);
  }
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

void modSIMaster::cmdDelete_Click() { Guarded (&modSIMaster::Delete)(); }

void modSIMaster::Delete() {
  if (FnBlnPermitted(session_, cmdDelete) || clickedName_.empty()) return;
  const auto clicked = std::ranges::find(masters_, clickedName_, &InstructionMaster::siName);
  const auto row = static_cast<std::size_t>(clicked - masters_.begin());
  if (IsMasterInUse(session_, type_, clickedName_)) {
    fpgSIMaster.PaintRow(row, kNoColour);
    session_.Inform("Entries found in " + caption_ + " details for selected " + caption_ +
                    ".\r\nCannot delete.");
    return;
  }
  fpgSIMaster.PaintRow(row, kDeleteColour);
  const bool confirmed = session_.desk.Confirm("Do you want to delete selected record?", session_.title);
  fpgSIMaster.PaintRow(row, kNoColour);
  if (!confirmed) return;

  // A name without instructions marks nobody; the code differs from the one of saving.
  if (type_ == InstructionType::Incentive && chkTDSAppl.IsShown())
    MarkInstructionsForPorting(session_, type_, clickedName_, kPortInsOther);
  DeleteInstructionMaster(session_, type_, clickedName_);
  LoadFields(*clicked);
  WriteAudit(" Master Deleted");
  FillGrid();
  Clear();
}

void modSIMaster::WriteAudit(const std::string& deed) {
  if (!FnBlnAuditOn(session_)) return;
  std::string text = caption_ + deed + "::" + ":SI Type = " + caption_ + AuditPairs(AuditFields());
  if (HasAdvancedOptions()) text += "::Advance Options" + AuditPairs(AdvancedAuditFields());
  WriteAuditTrail(session_, 19, 0, "Standing Instructions - " + caption_ + deed, text);
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
