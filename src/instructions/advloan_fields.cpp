#include "instructions/advloan_fields.h"

#include <utility>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/modExternal.h"
#include "frame/session.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

std::optional<long> ChosenInstitution(const ComboBox& institution) {
  const std::string id = institution.BoundText();
  return id.empty() ? std::nullopt : std::optional(static_cast<long>(Val(id)));
}

void AdvLoanFields::ReadInto(AdvLoanEntry& entry, std::string serial) const {
  entry.institution = ChosenInstitution(institution);
  recovery.ReadChoices(entry);
  entry.ReadTyped({.serial = std::move(serial),
                   .name = name.Text(),
                   .account = account.Text(),
                   .date = date.Text(),
                   .amount = amount.Text(),
                   .interest = interest.Text(),
                   .remarks = remarks.Text(),
                   .instalment = recovery.txtInstlAmt.Text(),
                   .count = recovery.ShownCount(),
                   .recoverFrom = recovery.txtRecvrFrom.Text()});
}

std::map<EntryField, Control*> AdvLoanFields::ByRefusal() const {
  return {{EntryField::Name, &name},
          {EntryField::Institution, &institution},
          {EntryField::Account, &account},
          {EntryField::Date, &date},
          {EntryField::Amount, &amount},
          {EntryField::Interest, &interest},
          {EntryField::Instalment, &recovery.txtInstlAmt},
          {EntryField::Count, &recovery.txtNoOfInstlmnts},
          {EntryField::RecoverFrom, &recovery.txtRecvrFrom},
          {EntryField::Remarks, &remarks}};
}

void LeaveDate(TextBox& date, TextBox& recoverFrom) {
  const std::string typed = date.Text();
  date.SetText(IsDate(typed) ? FormatDateText(typed, "dd/MM/yyyy") : clsDateHandle::FnStrCorrectDate(typed));
  if (recoverFrom.Text().empty() && !date.Text().empty())
    recoverFrom.SetText(FormatDateText(date.Text(), "Mmm/YYYY"));
}

void LeaveAmount(const Session& session, const NameRules& rules, TextBox& amount, TextBox& interest) {
  // A stored amount cannot be typed over, so leaving it must not touch the stored interest.
  if (amount.locked || amount.Text().empty()) return;
  const double number = clsGenCmn::FnDblTrimVal(amount.Text());
  if (session.AdvanceMgmtYN && !rules.REDUCINGBALYN && rules.INTRRATE > 0) {
    // One figure for the whole advance, whatever its tenure.
    interest.SetText(NumberText(number * (rules.INTRRATE / 100)));
  }
  amount.SetText(ShownAmount(number));
}

void LeavePercent(TextBox& percent) {
  if (!percent.Text().empty()) percent.SetText(ShownAmount(clsGenCmn::FnDblTrimVal(percent.Text())));
}

void CalculateInterestBy(Session& session, const std::function<void()>& calculator, const TextBox& amount,
                         TextBox& interest) {
  SettingsStore& settings = session.machine.settings;
  settings.Set("Settings", "ICPrcpl", ReplaceAll(amount.Text(), ",", ""));
  calculator();
  settings.Set("Settings", "ICPrcpl", "");
  // A figure already typed is kept; the calculator's answer is dropped then.
  if (interest.Text().empty()) interest.SetText(settings.Get("Settings", "ICIntrAmt", ""));
}

void OpenInterestCalculator(Session& session) {
  StartExternal(session, {"KTLIntrCalc", "Interest Calculation", ""});
}

}  // namespace ktl
