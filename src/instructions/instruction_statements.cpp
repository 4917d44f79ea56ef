#include "instructions/instruction_statements.h"

#include <fmt/format.h>

#include "common/sql_text.h"
#include "frame/session.h"
#include "runtime/numbers.h"

namespace ktl {

std::string WhereInstruction(const InstructionKey& key) {
  return fmt::format("EMPID = {} And SERIALNO = {} And SITYPE = {}", key.employee, key.serial, key.siType);
}

std::string SqlAmount(double amount) {
  if (WholePaise(amount)) {
    std::string text = FormatNumber(amount, "0.00");
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
    return text;
  }
  std::string text = fmt::format("{:.15g}", amount);
  if (text.find('e') != std::string::npos) text = fmt::format("{:.6f}", amount);
  return text;
}

std::string SqlText(Session& session, std::string_view text) {
  return clsSPChar(session.machine.settings.Get("Settings", "DBType", "ACC97")).FnStrSpSQL(text);
}

void RaiseEditMode(Session& session, long employee, std::string_view months, AttendanceWording wording) {
  session.Cn.Execute(fmt::format(
      "Update SLC_SALARYCALC_E Set EDITMODEYN = 1 Where EMPID = {} And MONTHYEAR {}", employee, months));
  if (!session.data.ExecuteSql("SELECT TOP 1 * FROM HVN_ATTENDANCE")) return;
  const std::string condition =
      wording == AttendanceWording::EmployeeFirst
          ? fmt::format("  EMPID = {} And ISNULL(UNITLOCKYN, 0) <> 1 AND MONTHYEAR {}", employee, months)
          : fmt::format("ISNULL(UNITLOCKYN,0) <> 1 AND  EMPID = {} And MONTHYEAR {}", employee, months);
  session.Cn.Execute("UPDATE  HVN_ATTENDANCE Set EDITMODEYN = 1 FROM    HVN_ATTENDANCE SE WHERE " +
                     condition);
}

std::string MonthsOfInstruction(const InstructionKey& key) {
  return "In (Select MONTHYEAR From INS_EMIDETAIL Where " + WhereInstruction(key) + ")";
}

bool IsMonthLocked(Session& session, long monthYear) {
  return session.data
             .FnVarGetDbValue(
                 fmt::format("Select LOCKEDYN From MAS_MONTHYEAR Where MONTHYEAR = {}", monthYear), 0)
             .NumberOr0() == 1;
}

long NextCounter(Session& session, const InstructionKey& key) {
  return session.data
             .FnVarGetDbValue("Select Max(Counter) from INS_EMIDETAIL Where " + WhereInstruction(key), 0)
             .ToLong() +
         1;
}

long AddMonthAtEnd(Session& session, const InstructionKey& key, const NewMonth& month) {
  const long lastMonth =
      session.data
          .FnVarGetDbValue("Select Max(MONTHYEAR) from INS_EMIDETAIL Where " + WhereInstruction(key), 0)
          .ToLong();
  if (lastMonth == 0) return 0;
  std::string institution = "Null";
  if (key.siType == 2) {
    institution =
        session.data
            .FnVarGetDbValue("Select INSTID From INS_EMIDETAIL Where " + WhereInstruction(key), "Null")
            .ToText();
  }
  session.Cn.Execute(fmt::format(
      "Insert Into INS_EMIDETAIL (EMPID, SERIALNO, SITYPE, MONTHYEAR, [COUNTER], MDFYAMT, INSTID, EMIAMT{}) "
      "VALUES ({}, {}, {}, {}, {}, {}, {}, {}{})",
      month.furtherColumns, key.employee, key.serial, key.siType, lastMonth + 1, month.counter,
      SqlAmount(month.amount), institution, SqlAmount(month.amount), month.furtherValues));
  return lastMonth + 1;
}

void AddMonthAtEnd(Session& session, const InstructionKey& key, double amount) {
  AddMonthAtEnd(session, key, NewMonth{amount, NextCounter(session, key)});
}

}  // namespace ktl
