#include "frame/doors.h"

#include <fmt/format.h>

#include <string_view>

#include "frame/session.h"
#include "screen/screen.h"

namespace ktl {

namespace {

// As a person calls it.
std::string_view WordsFor(std::string_view screenName) {
  static constexpr std::pair<std::string_view, std::string_view> kWords[] = {
      {"modEMIEmp", "month view"},
      {"modMultiAllot", "multiple allotment"},
      {"modHLoan", "house loan"},
      {"frmAdvLoanBulkDelete", "bulk delete"},
      {"frmSelMonth", "choice of a month"},
      {"frmKtlCalender", "calendar"},
      {"modInsGInsSSS", "premium entry"},
      {"modLockMonth", "month lock"},
      {"modSIDetails", "recovery on leaving"},
      {"modSalSIAdj", "deduction preference"},
      {"frmSepInt", "separate interest"},
      {"frmSBI", "benchmark rates"},
      {"frmUpdateInt", "yearly benefit"}};
  for (const auto& [name, words] : kWords) {
    if (name == screenName) return words;
  }
  return "screen";
}

}  // namespace

void TellMissingScreen(Session& session, const std::string& screenName) {
  session.Inform(fmt::format("The {} is not part of this build yet.", WordsFor(screenName)));
}

void ShowScreen(Session& session, Screen& screen) {
  Screen* const opener = session.ActiveForm;
  session.desk.ShowModal(screen);
  if (session.ActiveForm == &screen) session.ActiveForm = opener;
}

}  // namespace ktl
