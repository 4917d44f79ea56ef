#include "instructions/instruction_statements.h"

#include <fmt/format.h>

#include "common/sql_text.h"
#include "frame/session.h"

namespace ktl {

Statement WhereInstruction(const InstructionKey& key) {
  return Statement(
      fmt::format("EMPID = {} And SERIALNO = {} And SITYPE = {}", key.employee, key.serial, key.type));
}

std::string SqlText(Session& session, std::string_view text) {
  return clsSPChar(session.machine.settings.Get("Settings", "DBType", "ACC97")).FnStrSpSQL(text);
}

void RaiseEditMode(Session& session, long employee, const Statement& months, AttendanceWording wording) {
  session.Cn.Execute(
      fmt::format("Update SLC_SALARYCALC_E Set EDITMODEYN = 1 Where EMPID = {} And MONTHYEAR {}", employee,
                  months.text()));
  if (!session.data.ExecuteSql("SELECT TOP 1 * FROM HVN_ATTENDANCE")) return;
  const std::string condition =
      wording == AttendanceWording::EmployeeFirst
          ? fmt::format("  EMPID = {} And ISNULL(UNITLOCKYN, 0) <> 1 AND MONTHYEAR {}", employee,
                        months.text())
          : fmt::format("ISNULL(UNITLOCKYN,0) <> 1 AND  EMPID = {} And MONTHYEAR {}", employee,
                        months.text());
  session.Cn.Execute("UPDATE  HVN_ATTENDANCE Set EDITMODEYN = 1 FROM    HVN_ATTENDANCE SE WHERE " +
                     condition);
}

Statement MonthsOfInstruction(const InstructionKey& key) {
  return Statement("In (Select MONTHYEAR From INS_EMIDETAIL Where " + WhereInstruction(key).text() + ")");
}

Statement OneMonth(long monthYear) { return Statement(fmt::format("= {}", monthYear)); }

bool IsMonthLocked(Session& session, long monthYear) {
  return session.data
             .FnVarGetDbValue(
                 fmt::format("Select LOCKEDYN From MAS_MONTHYEAR Where MONTHYEAR = {}", monthYear), 0)
             .NumberOr0() == 1;
}

long NextCounter(Session& session, const InstructionKey& key) {
  return session.data
             .FnVarGetDbValue("Select Max(Counter) from INS_EMIDETAIL Where " + WhereInstruction(key).text(),
                              0)
             .ToLong() +
         1;
}

long AddMonthAtEnd(Session& session, const InstructionKey& key, const NewMonth& month) {
  const long lastMonth =
      session.data
          .FnVarGetDbValue("Select Max(MONTHYEAR) from INS_EMIDETAIL Where " + WhereInstruction(key).text(),
                           0)
          .ToLong();
  if (lastMonth == 0) return 0;
  std::string institution = "Null";
  if (key.type == InstructionType::Loan) {
    institution =
        session.data
            .FnVarGetDbValue("Select INSTID From INS_EMIDETAIL Where " + WhereInstruction(key).text(), "Null")
            .ToText();
  }
  session.Cn.Execute(fmt::format(
      "Insert Into INS_EMIDETAIL (EMPID, SERIALNO, SITYPE, MONTHYEAR, [COUNTER], MDFYAMT, INSTID, EMIAMT{}) "
      "VALUES ({}, {}, {}, {}, {}, {}, {}, {}{})",
      month.furtherColumns.text(), key.employee, key.serial, key.type, lastMonth + 1, month.counter,
      SqlAmount(month.amount), institution, SqlAmount(month.amount), month.furtherValues.text()));
  return lastMonth + 1;
}

void AddMonthAtEnd(Session& session, const InstructionKey& key, double amount) {
  AddMonthAtEnd(session, key, NewMonth{amount, NextCounter(session, key)});
}

}  // namespace ktl
