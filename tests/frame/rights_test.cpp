#include "frame/rights.h"

#include <gtest/gtest.h>

#include "database/recordset.h"
#include "frame/frame_fixture.h"
#include "screen/controls.h"
#include "screen/screen.h"

namespace ktl {
namespace {

struct ThreeButtons final : Screen {
  ThreeButtons() : Screen("frmThreeButtons") {}
  TextBox txtTagged{*this, "txtTagged"};
  Button cmdSave{*this, "cmdSave", "&Save"};
  Button cmdDelete{*this, "cmdDelete", "&Delete"};
  Button cmdPreset{*this, "cmdPreset", "Other"};
};

class RightsTest : public FrameFixture {
 protected:
  RightsTest() {
    machine.settings.Set("Settings", "User", "RAVI");
    Connect();
    session.hostName = "PC1";
    session.MultiLoginYN = true;
    machine.settings.Set("Settings", "DBType", "SQL");
    for (const char* table : {"SEC_USERLIST", "SEC_BUTDET", "SEC_BUTPER"})
      Sql("DELETE FROM " + std::string(table));
    Sql("INSERT INTO SEC_USERLIST (UserID, USERNAME, GROUPID) VALUES (2, 'RAVI', 3), (3, 'MEENA', 4)");
    // A name is found only with asterisks around it.
    Sql("INSERT INTO SEC_BUTDET (BUTID, FORMID, BUTNAME) VALUES (218, 52, '*Save*'), (219, 53, '*Delete*'), "
        "(220, 52, 'Delete'), (300, 52, 'Preset')");
    Sql("INSERT INTO SEC_BUTPER (BUTID, GROUPID, BUTALLOWYN) VALUES (218, 3, 0), (300, 3, 0), (218, 4, 1)");
    screen.cmdPreset.tag = "300";
  }
  ThreeButtons screen;
};

TEST_F(RightsTest, RefusedButtonsCarryTheMark) {
  ApplyButtonRights(session, screen, 52);
  EXPECT_EQ(screen.cmdSave.tag, "218NA");
  EXPECT_EQ(screen.cmdDelete.tag, "");
  EXPECT_EQ(screen.cmdPreset.tag, "300NA");
  EXPECT_EQ(screen.txtTagged.tag, "");
  EXPECT_FALSE(FnBlnPermitted(session, screen.cmdDelete));
  EXPECT_TRUE(desk.Boxes().empty());
  EXPECT_TRUE(FnBlnPermitted(session, screen.cmdSave));
  EXPECT_EQ(desk.LastBox().text, "Permission denied.");
  EXPECT_EQ(desk.LastBox().title, kApplicationTitle);
  EXPECT_EQ(desk.LastBox().icon, Icon::Exclamation);

  ApplyButtonRights(session, screen, 52);
  EXPECT_EQ(screen.cmdSave.tag, "218NANA");
  session.MultiLoginYN = false;
  EXPECT_FALSE(FnBlnPermitted(session, screen.cmdSave));
}

TEST_F(RightsTest, WhoIsNotRefused) {
  const struct {
    const char* user;
    bool multiLogin;
    const char* saveTag;
    const char* presetTag;
  } cases[] = {
      {"MEENA", true, "218", "300"},  // allowed, and no row at all
      {"admin", true, "", "300"},
      {"RAVI", false, "", "300"},
      {"O'BRIEN", true, "218", "300"},
  };
  for (const auto& c : cases) {
    ThreeButtons fresh;
    fresh.cmdPreset.tag = "300";
    machine.settings.Set("Settings", "User", c.user);
    session.MultiLoginYN = c.multiLogin;
    ApplyButtonRights(session, fresh, 52);
    EXPECT_EQ(fresh.cmdSave.tag, c.saveTag) << c.user;
    EXPECT_EQ(fresh.cmdPreset.tag, c.presetTag) << c.user;
  }
}

TEST_F(RightsTest, ANullRightAllowsAndANullNumberIsNone) {
  Sql("UPDATE SEC_BUTPER SET BUTALLOWYN = NULL");
  ApplyButtonRights(session, screen, 52);
  EXPECT_EQ(screen.cmdSave.tag, "218");
  EXPECT_EQ(screen.cmdPreset.tag, "300");
}

TEST_F(RightsTest, AuditTrailIsReadBack) {
  machine.environment.variables["USERNAME"] = "Ravi  Kumar";
  Sql("DELETE FROM SEC_AUDITTRAIL");
  WriteAuditTrail(session, 19, 17, "Standing Instructions - Loan Created/Updated",
                  "::SI Type = Loan:SI Name = Car Loan:Remarks = wife's car", "by [phone]");
  const Recordset row(session.Cn, "SELECT * FROM SEC_AUDITTRAIL");
  ASSERT_EQ(row.RecordCount(), 1u);
  EXPECT_EQ(row["USERNAME"].ToText(), "RAVI");
  EXPECT_EQ(row["MENUNO"].ToLong(), 19);
  EXPECT_EQ(row["EMPID"].ToLong(), 17);
  EXPECT_EQ(row["ACTIONTEXT"].ToText(), "Standing Instructions - Loan Created/Updated");
  EXPECT_EQ(row["DETAILTEXT"].ToText().find('\''), std::string::npos);
  EXPECT_EQ(row["DETAILTEXT"].ToText().rfind("::SI Type = Loan:SI Name = Car Loan:Remarks = wife", 0), 0u);
  EXPECT_EQ(row["EXTRATEXT"].TextOrEmpty(), "by phone");
  EXPECT_EQ(row["WINUSER"].ToText(), "RaviKumar");
}

TEST_F(RightsTest, TheAuditSwitchIsAskedOnce) {
  for (const bool on : {true, false}) {
    session.auditOn.reset();
    Sql(on ? "UPDATE MAS_OPTSETFEATURE SET AUDITTRAILYN = 1"
           : "UPDATE MAS_OPTSETFEATURE SET AUDITTRAILYN = 0");
    EXPECT_EQ(FnBlnAuditOn(session), on);
    Sql("UPDATE MAS_OPTSETFEATURE SET AUDITTRAILYN = 1 - AUDITTRAILYN");
    EXPECT_EQ(FnBlnAuditOn(session), on);
  }
}

TEST_F(RightsTest, EmployeeLocks) {
  Sql("DELETE FROM MAS_EMPLOYEE");
  Sql("INSERT INTO MAS_EMPLOYEE (EMPID, EMPNAME, LOCKYN) VALUES (1, 'Asha Rane', 1), (2, 'Vikram Desai', "
      "NULL)");
  Sql("DELETE FROM SEC_EMPLOCK");
  Sql("INSERT INTO SEC_EMPLOCK (EMPID, MONTHYEAR, LOCKYN) VALUES (2, 24125, 1)");
  Sql("UPDATE MAS_OPTSETFEATURE SET EMPLOCKYN = 1");
  EXPECT_EQ(ReadEmpLockStatus(session, 1), 1);
  EXPECT_EQ(session.EmpLockStatus, 1);
  EXPECT_EQ(ReadEmpLockStatus(session, 2), 0);
  EXPECT_EQ(session.EmpLockStatus, 0);
  EXPECT_TRUE(IsEmployeeLocked(session, 2, 24121, "DEFAULT"));
  EXPECT_TRUE(IsEmployeeLocked(session, 2, 24125, "24125"));
  EXPECT_FALSE(IsEmployeeLocked(session, 2, 24121, "24124"));
  EXPECT_FALSE(IsEmployeeLocked(session, 1, 24121, "DEFAULT"));
}

TEST_F(RightsTest, ClassSecurityFillsTheWorkstationsTable) {
  Sql("DELETE FROM SEC_CLASSEMP");
  Sql("INSERT INTO SEC_CLASSEMP (USERNAME, EMPID) VALUES ('RAVI', 5), ('MEENA', 6)");
  Sql("INSERT INTO MAS_EMPLOYEE (EMPID, EMPNAME) SELECT 5, 'Asha Rane' WHERE NOT EXISTS "
      "(SELECT * FROM MAS_EMPLOYEE WHERE EMPID = 5)");
  EXPECT_EQ(ClassSecurityCondition(session), "");
  Sql("UPDATE MAS_OPTSET SET CLASSSECURITYN = 1");
  for (const bool forNewestMonth : {true, false}) {
    const std::string condition = ClassSecurityCondition(session, forNewestMonth);
    EXPECT_EQ(condition, " WHERE EMPID  IN (SELECT EMPID FROM [TMPPC1])");
    EXPECT_EQ(Number("SELECT MIN(EMPID) FROM MAS_EMPLOYEE" + condition), 5);
    EXPECT_EQ(Number("SELECT MAX(EMPID) FROM MAS_EMPLOYEE" + condition), 5);
  }
  machine.settings.Set("Settings", "User", "ADMIN");
  EXPECT_NE(ClassSecurityCondition(session), "");  // the administrator is not exempt here
  session.ExtendedYN = true;
  session.WinUserID = "ravi";
  EXPECT_EQ(ClassSecurityCondition(session), " WHERE EMPID  IN (SELECT EMPID FROM [TMPPC1ravi])");
  EXPECT_GE(Number("SELECT COUNT(*) FROM [TMPPC1ravi]"), 1);
}

}  // namespace
}  // namespace ktl
