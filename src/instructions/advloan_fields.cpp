#include "instructions/advloan_fields.h"

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/modExternal.h"
#include "frame/session.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

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
