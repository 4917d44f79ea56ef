#include "recovery/month_lock.h"

#include <fmt/format.h>

#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "frame/writing_turn.h"

namespace ktl {

namespace {

constexpr long kMonthLocksMenu = 5;
constexpr const char* kMonths =
    "SELECT MM.MONTHYEAR AS MONTHYEAR, MONTHNAME , MM.LOCKEDYN AS LOCKEDYN,MM.ATTLOCKYN FROM QRYMONTH "
    "QM,MAS_MONTHYEAR MM WHERE QM.MONTHYEAR = MM.MONTHYEAR ORDER BY MM.MONTHYEAR DESC";

std::string Changed(bool now, bool before) { return fmt::format("{:d} ({:d})", now, before); }

// Both locks as one number. A month lock without its leave-track lock is 10 and counts as unlocked.
MonthSwitches ReadStateBefore(Session& session, long monthYear) {
  const long state =
      session.data
          .Guarding(session.Sql(
              "SELECT ((LOCKEDYN * 10) + ATTLOCKYN) FROM MAS_MONTHYEAR where monthyear = {}", monthYear))
          .ToLong();
  return {.month = state > 10, .leave = state % 2 == 1};
}

void LockUnits(Session& session, const LockMonthRow& row, bool before) {
  session.data.ExecuteSql(session.Sql("UPDATE HVN_ATTENDANCE SET UNITLOCKYN={} WHERE MONTHYEAR={}",
                                      int{row.now.month}, row.monthYear));
  WriteAuditTrail(
      session, kMonthLocksMenu, 0, " Halvern Unit lock Changed",
      fmt::format(" : Month/Year = {}: Month lockYN changed= {}", row.name, Changed(row.now.month, before)));
}

// Units are locked only by a change that was audited, and never unlocked.
void SaveMonth(Session& session, const LockMonthRow& row) {
  std::string detail;
  MonthSwitches before;
  if (FnBlnAuditOn(session)) {
    before = ReadStateBefore(session, row.monthYear);
    if (row.now.month != before.month)
      detail += " : Month lockYN changed= " + Changed(row.now.month, before.month);
    if (row.now.leave != before.leave)
      detail += " : Leave Track LockYN changed= " + Changed(row.now.leave, before.leave);
    if (!detail.empty())
      WriteAuditTrail(session, kMonthLocksMenu, 0, " Month lock Changed",
                      " : Month/Year = " + row.name + detail);
  }
  session.Cn.Execute(session.Sql("UPDATE MAS_MONTHYEAR SET LOCKEDYN = {},ATTLOCKYN = {} WHERE MONTHYEAR = {}",
                                 int{row.now.month}, int{row.now.leave}, row.monthYear));
  if (row.now.month && !detail.empty()) LockUnits(session, row, before.month);
}

}  // namespace

MonthSwitches TiedToMonth(MonthSwitches clicked) { return {clicked.month, clicked.month}; }

MonthSwitches TiedToLeave(MonthSwitches clicked) { return {clicked.month, clicked.month || clicked.leave}; }

void RepairLeaveLocks(Session& session) {
  session.Cn.Execute("UPDATE MAS_MONTHYEAR SET ATTLOCKYN = 1 WHERE LOCKEDYN = 1 ");
}

std::string LockMonthsText(Session& session) { return RowsAsText(session, kMonths); }

std::vector<LockMonthRow> ReadLockMonths(Session& session) {
  std::vector<LockMonthRow> rows;
  for (Recordset rs(session.Cn, kMonths); !rs.Eof(); rs.MoveNext()) {
    rows.push_back({rs["MONTHYEAR"].ToLong(),
                    rs["MONTHNAME"].TextOrEmpty(),
                    {IsSet(rs["LOCKEDYN"]), IsSet(rs["ATTLOCKYN"])}});
  }
  return rows;
}

void SaveLockMonths(Session& session, const std::vector<LockMonthRow>& rows) {
  for (const LockMonthRow& row : rows) SaveMonth(session, row);
}

std::vector<LockHistoryRow> ReadLockHistory(Session& session) {
  std::vector<LockHistoryRow> rows;
  Recordset rs(session.Cn,
               "SELECT  [MONTHNAME],MH.LOCKEDYN,UNAME AS SYSTEMNAME,CHANGEDDATE,USERNAME FROM    "
               "SEC_MONTHLOCKHISTORY MH,SEC_USERLIST UL,QryMonth QM Where MH.MONTHYEAR = QM.MONTHYEAR And "
               "MH.KTLUSERID = UL.UserID ORDER BY CHANGEDDATE DESC");
  for (; !rs.Eof(); rs.MoveNext()) {
    rows.push_back({rs["MONTHNAME"].TextOrEmpty(), rs["USERNAME"].TextOrEmpty(),
                    rs["SYSTEMNAME"].TextOrEmpty(), IsSet(rs["LOCKEDYN"]), DateIfAny(rs["CHANGEDDATE"])});
  }
  return rows;
}

}  // namespace ktl
