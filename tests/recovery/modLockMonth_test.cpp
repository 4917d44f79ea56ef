#include "recovery/modLockMonth.h"

#include <fmt/format.h>

#include <filesystem>

#include "recovery_fixture.h"

namespace ktl {
namespace {

class LockMonth : public RecoveryTest {
 protected:
  LockMonth() {
    company.Execute("INSERT INTO SEC_USERLIST (UserID, USERNAME, GROUPID) VALUES (2, 'RAVI', 5)");
    for (int month = 0; month < 3; ++month)
      company.Row("HVN_ATTENDANCE").With("EMPID", 17).With("MONTHYEAR", kApr2024 + month);
  }
  modLockMonth& OpenLocks() { return Workstation::Open<modLockMonth>(); }
  void SetAudit(bool on) { session.auditOn = on; }
  // The rows count from the newest month, Mar/2027.
  static constexpr std::size_t kApril = 35, kMay = 34, kJune = 33;
  std::string Locks() {
    return company.Rows(
        "SELECT MONTHYEAR - 24292, LOCKEDYN, ATTLOCKYN FROM MAS_MONTHYEAR WHERE LOCKEDYN + "
        "ATTLOCKYN > 0 ORDER BY MONTHYEAR");
  }
  std::string Audit() {
    return company.Rows("SELECT MENUNO, EMPID, ACTIONTEXT, DETAILTEXT FROM SEC_AUDITTRAIL ORDER BY AUDITID");
  }
};

TEST_F(LockMonth, TheSwitchesAreTied) {
  const struct {
    MonthSwitches clicked, byMonth, byLeave;
  } cases[] = {{{false, false}, {false, false}, {false, false}},
               {{false, true}, {false, false}, {false, true}},
               {{true, false}, {true, true}, {true, true}},
               {{true, true}, {true, true}, {true, true}}};
  for (const auto& each : cases) {
    EXPECT_EQ(TiedToMonth(each.clicked), each.byMonth);
    EXPECT_EQ(TiedToLeave(each.clicked), each.byLeave);
  }
}

TEST_F(LockMonth, LocksMonthsAndTheirUnits) {
  company.Execute("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 1 WHERE MONTHYEAR = 24292");
  modLockMonth& locks = OpenLocks();
  EXPECT_EQ(Locks(), "0|1|1");  // repaired
  SetAudit(true);
  Grid& grid = locks.fpgLockMonth;
  EXPECT_EQ(grid.Text(kMay, modLockMonth::kMonth), "May/2024");
  TickCell(grid, kApril, modLockMonth::kLeaveLock, false);
  EXPECT_TRUE(grid.IsTicked(kApril, modLockMonth::kLeaveLock));  // has no lasting effect
  TickCell(grid, kMay, modLockMonth::kMonthLock, true);
  TickCell(grid, kJune, modLockMonth::kLeaveLock, true);
  Click(locks.cmdSave);
  EXPECT_EQ(desk.TakeLines(), "Information | Saving Information | Updated");
  EXPECT_EQ(Locks(), "0|1|1\n1|1|1\n2|0|1");
  const std::string locked =
      "5|0| Month lock Changed| : Month/Year = Jun/2024 : Leave Track LockYN changed= 1 (0)\n"
      "5|0| Month lock Changed| : Month/Year = May/2024 : Month lockYN changed= 1 (0) : Leave Track LockYN "
      "changed= 1 (0)\n"
      "5|0| Halvern Unit lock Changed| : Month/Year = May/2024: Month lockYN changed= 1 (0)";
  EXPECT_EQ(Audit(), locked);
  const char* units = "SELECT UNITLOCKYN FROM HVN_ATTENDANCE ORDER BY MONTHYEAR";
  EXPECT_EQ(company.Rows(units), "0\n1\n0");
  TickCell(grid, kMay, modLockMonth::kMonthLock, false);
  Click(locks.cmdSave);
  EXPECT_EQ(Locks(), "0|1|1\n2|0|1");
  EXPECT_EQ(company.Rows(units), "0\n1\n0");  // never unlocked
  SetAudit(false);
  TickCell(grid, kJune, modLockMonth::kMonthLock, true);
  Click(locks.cmdSave);
  EXPECT_EQ(company.Rows(units), "0\n1\n0");
  EXPECT_EQ(company.Rows("SELECT COUNT(*) FROM SEC_AUDITTRAIL"), "4");
  company.Execute("UPDATE MAS_MONTHYEAR SET ATTLOCKYN = 0");
  locks.Unload();
  EXPECT_EQ(Locks(), "0|1|1\n2|1|1");  // repaired once more
}

TEST_F(LockMonth, AMonthLockWithoutItsLeaveTrackReadsAsUnlocked) {
  company.Execute("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 1 WHERE MONTHYEAR = 24292");
  SetAudit(true);
  SaveLockMonths(session, {{kApr2024, "Apr/2024", {true, true}}});
  EXPECT_EQ(
      Audit().find("5|0| Month lock Changed| : Month/Year = Apr/2024 : Month lockYN changed= 1 (0) : Leave "
                   "Track LockYN changed= 1 (0)"),
      0u);
}

TEST_F(LockMonth, TheDatabaseNotesWhoTurnedWhichLock) {
  machine.folder.path = folder.path().string();
  company.Execute("INSERT INTO SEC_MONTHLOCKHISTORY VALUES (24292, 1, 'PC7', '2024-05-01 17:05:09', 1)");
  company.Execute("INSERT INTO SEC_MONTHLOCKHISTORY VALUES (24293, 1, 'PC7', '2024-05-01 17:05:10', 99)");
  modLockMonth& locks = OpenLocks();
  TickCell(locks.fpgLockMonth, kMay, modLockMonth::kMonthLock, true);
  TickCell(locks.fpgLockMonth, kJune, modLockMonth::kLeaveLock, true);  // is no month lock
  Click(locks.cmdSave);
  EXPECT_FALSE(locks.fpgHistory.visible);
  Click(locks.cmdHistory);
  EXPECT_TRUE(locks.fpgHistory.visible);
  ASSERT_EQ(locks.fpgHistory.rows.size(), 2u);  // nothing by users that are not listed
  const auto row = [&](std::size_t line) {
    Texts texts;
    for (const GridCell& cell : locks.fpgHistory.rows[line].cells) texts.push_back(cell.text);
    return texts;
  };
  Texts newest = row(0);
  newest.pop_back();  // the time of the machine
  EXPECT_EQ(newest, (Texts{"May/2024", "RAVI", "PC1", "Locked"}));
  EXPECT_EQ(row(1), (Texts{"Apr/2024", "ADMIN", "PC7", "Locked", "01/May/2024 05:05:09 PM"}));
  desk.TakeBoxes();
  Click(locks.mnuExport);
  const std::string told = desk.TakeTexts().back();
  ASSERT_EQ(told.find("The history has been written to "), 0u) << told;
  EXPECT_TRUE(std::filesystem::exists(told.substr(told.find('/'))));
}

TEST_F(LockMonth, RefusesAndWritesNothing) {
  modLockMonth& locks = OpenLocks();
  TickCell(locks.fpgLockMonth, kMay, modLockMonth::kMonthLock, true);
  company.Execute("UPDATE MAS_MONTHYEAR SET ATTLOCKYN = 1 WHERE MONTHYEAR = 24310");
  Click(locks.cmdSave);
  EXPECT_EQ(desk.TakeTexts(),
            Texts{"Row cannot be located for updating. Some values may have been changed since "
                  "it was last read."});
  EXPECT_EQ(Locks(), "18|0|1");
  EXPECT_FALSE(locks.fpgLockMonth.IsTicked(kMay, modLockMonth::kMonthLock));  // shown anew
  session.MultiLoginYN = true;
  locks.cmdSave.tag = "12NA";
  TickCell(locks.fpgLockMonth, kMay, modLockMonth::kMonthLock, true);
  Click(locks.cmdSave);
  EXPECT_EQ(desk.TakeTexts(), Texts{"Permission denied."});
  EXPECT_EQ(Locks(), "18|0|1");
  session.ReadOnlyUser = true;
  modLockMonth& shut = OpenLocks();
  EXPECT_FALSE(shut.cmdSave.enabled);
  EXPECT_TRUE(shut.fpgLockMonth.IsLocked(kMay, modLockMonth::kMonthLock));
  EXPECT_TRUE(shut.fpgLockMonth.IsLocked(kMay, modLockMonth::kLeaveLock));
}

}  // namespace
}  // namespace ktl
