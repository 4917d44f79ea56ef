#include "instructions/instruction_statements.h"

#include <fmt/format.h>

#include "database/recordset.h"
#include "frame/session.h"

namespace ktl {

Statement WhereInstruction(const InstructionKey& key) {
  return Statement(fmt::format("EMPID = {} And SERIALNO = {} And SITYPE = {}", key.employee, key.serial,
                               NumberOf(key.type)));
}

void DeleteRows(Session& session, const char* table, const InstructionKey& key) {
  session.Cn.Execute(session.Sql("Delete From {} Where  {}", Statement(table), WhereInstruction(key)));
}

void RaiseEditMode(Session& session, long employee, const Statement& months, AttendanceWording wording) {
  session.Cn.Execute(session.Sql(
      "Update SLC_SALARYCALC_E Set EDITMODEYN = 1 Where EMPID = {} And MONTHYEAR {}", employee, months));
  if (!session.data.ExecuteSql("SELECT TOP 1 * FROM HVN_ATTENDANCE")) return;
  session.Cn.Execute(session.Sql(
      wording == AttendanceWording::EmployeeFirst
          ? "UPDATE  HVN_ATTENDANCE Set EDITMODEYN = 1 FROM    HVN_ATTENDANCE SE WHERE   EMPID = {} And "
            "ISNULL(UNITLOCKYN, 0) <> 1 AND MONTHYEAR {}"
          : "UPDATE  HVN_ATTENDANCE Set EDITMODEYN = 1 FROM    HVN_ATTENDANCE SE WHERE "
            "ISNULL(UNITLOCKYN,0) <> 1 AND  EMPID = {} And MONTHYEAR {}",
      employee, months));
}

Statement MonthsOfInstruction(const InstructionKey& key) {
  return Statement(
      fmt::format("In (Select MONTHYEAR From INS_EMIDETAIL Where {})", WhereInstruction(key).text()));
}

Statement OneMonth(long monthYear) { return Statement(fmt::format("= {}", monthYear)); }

bool IsMonthLocked(Session& session, long monthYear) {
  return session.data
             .Guarding(session.Sql("Select LOCKEDYN From MAS_MONTHYEAR Where MONTHYEAR = {}", monthYear))
             .NumberOr0() == 1;
}

bool HasSchedule(Session& session, const InstructionKey& key) {
  return session.data.FnBlnRecExists(
      session.Sql("Select EMPID From INS_EMIDETAIL Where {}", WhereInstruction(key)));
}

std::vector<long> ReadScheduleMonths(Session& session, const InstructionKey& key) {
  std::vector<long> months;
  Recordset rs(session.Cn, session.Sql("Select MONTHYEAR From INS_EMIDETAIL Where {} ORDER BY MONTHYEAR",
                                       WhereInstruction(key)));
  for (; !rs.Eof(); rs.MoveNext()) months.push_back(rs[0].ToLong());
  return months;
}

long NextCounter(Session& session, const InstructionKey& key) {
  return session.data.Long(
             session.Sql("Select Max(Counter) from INS_EMIDETAIL Where {}", WhereInstruction(key))) +
         1;
}

long AddMonthAtEnd(Session& session, const InstructionKey& key, const NewMonth& month) {
  const Statement where = WhereInstruction(key);
  const long lastMonth =
      session.data.Long(session.Sql("Select Max(MONTHYEAR) from INS_EMIDETAIL Where {}", where));
  if (lastMonth == 0) return 0;
  Statement institution("Null");
  if (key.type == InstructionType::Loan) {
    institution =
        Statement(session.data.Text(session.Sql("Select INSTID From INS_EMIDETAIL Where {}", where), "Null"));
  }
  session.Cn.Execute(session.Sql(
      "Insert Into INS_EMIDETAIL (EMPID, SERIALNO, SITYPE, MONTHYEAR, [COUNTER], MDFYAMT, INSTID, EMIAMT{}) "
      "VALUES ({}, {}, {}, {}, {}, {}, {}, {}{})",
      month.furtherColumns, key.employee, key.serial, key.type, lastMonth + 1, month.counter, month.amount,
      institution, month.amount, month.furtherValues));
  return lastMonth + 1;
}

void AddMonthAtEnd(Session& session, const InstructionKey& key, double amount) {
  AddMonthAtEnd(session, key, NewMonth{amount, NextCounter(session, key)});
}

}  // namespace ktl
