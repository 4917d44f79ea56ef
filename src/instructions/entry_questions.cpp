#include "instructions/entry_questions.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/month_year.h"
#include "frame/modExternal.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "runtime/text.h"

namespace ktl {

bool MayLeaveNewRecord(Session& session, const char* question, const Button& cmdSave,
                       const std::function<bool()>& save) {
  switch (session.desk.MsgBox({question,
                               Buttons::YesNoCancel,
                               Icon::Question,
                               Answer::Yes,
                               session.title,
                               0,
                               {"&Yes, save", "&No, drop it", "&Cancel, go back"}})) {
    case Answer::Yes:
      return !FnBlnPermitted(session, cmdSave) && save();
    case Answer::No:
      return true;
    default:
      return false;
  }
}

bool AreRemarksTooLong(std::string_view remarks) {
  constexpr std::size_t kLongest = 4000;
  return Length(remarks) > kLongest;
}

std::optional<Refusal<NoField>> FindDeleteRefusal(Session& session, const InstructionKey& key,
                                                  const std::string& caption) {
  const std::vector<long> months = ReadScheduleMonths(session, key);
  std::string locked;
  for (long month : months) {
    if (!IsMonthLocked(session, month)) continue;
    locked += (locked.empty() ? "" : ", ") + FnStrFormatMonthYear(month);
  }
  if (!locked.empty()) {
    return Refusal<NoField>{.text = locked +
                                    " of the EMI month(s) has/have been locked.\r\nDelete these EMI(s) to "
                                    "delete the selected " +
                                    caption + ".\r\nUnlock the month(s)"};
  }
  const long first = months.empty() ? 0 : months.front();
  const long last = months.empty() ? 0 : months.back();
  if (!IsEmployeeLocked(session, key.employee, first, std::to_string(last))) return std::nullopt;
  return Refusal<NoField>{.text = "Emloyee has been locked one of the EMI month(s). Cannot Delete",
                          .icon = Icon::Exclamation,
                          .title = kDeniedTitle};
}

std::optional<Refusal<NoField>> FindMonthsRefusal(Session& session, long employee,
                                                  const std::vector<ScheduleMonth>& months) {
  const auto locked = std::ranges::count_if(
      months, [&session](const ScheduleMonth& month) { return IsMonthLocked(session, month.monthYear); });
  if (locked > 0) {
    return Refusal<NoField>{
        fmt::format("{} month(s) are locked.\r\nEMI details for these months will not be deleted.", locked)};
  }
  if (!IsEmployeeLocked(session, employee, months.front().monthYear, kNoLastMonth)) return std::nullopt;
  return Refusal<NoField>{
      .text = "Employee has been locked. Cannot Delete.", .icon = Icon::Exclamation, .title = kDeniedTitle};
}

void OpenEmployeeSummary(Session& session, long employee) {
  if (UpperCase(session.CurrentUser()) != "ADMIN" &&
      session.data.FnBlnRecExists(
          session.Sql("SELECT BUTALLOWYN FROM SEC_BUTPER WHERE BUTID = 612 AND BUTALLOWYN=0 AND GROUPID = "
                      "(SELECT GROUPID from SEC_USERLIST WHERE UPPER(USERNAME)= '{}')",
                      session.CurrentUser())))
    return session.desk.Warn("Permission denied.", session.title);
  if (employee == 0) return;
  session.machine.settings.Set("Settings", "EMPSUMMRY", std::to_string(employee));
  StartExternal(session, {"KTLFFS", "KestrelLedger - Full & Final settlement",
                          fmt::format("1502,{}", Value(session.MultiLoginYN).ToText())});
}

}  // namespace ktl
