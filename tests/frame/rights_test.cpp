#include "frame/rights.h"

#include <gtest/gtest.h>

#include <tuple>

#include "frame/writing_turn.h"
#include "screen/controls.h"
#include "screen/screen.h"
#include "support/frame_fixture.h"

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
    Setting("User", "RAVI");
    Connect();
    session.hostName = "PC1";
    session.MultiLoginYN = true;
    Setting("DBType", "SQL");
    Fill("SEC_USERLIST", "(UserID, USERNAME, GROUPID) VALUES (2, 'RAVI', 3), (3, 'MEENA', 4)");
    // A name is found only with asterisks around it.
    Fill("SEC_BUTDET",
         "(BUTID, FORMID, BUTNAME) VALUES (218, 52, '*Save*'), (219, 53, '*Delete*'), "
         "(220, 52, 'Delete'), (300, 52, 'Preset')");
    Fill("SEC_BUTPER", "(BUTID, GROUPID, BUTALLOWYN) VALUES (218, 3, 0), (300, 3, 0), (218, 4, 1)");
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
  EXPECT_EQ(desk.TakeLines(), "Exclamation | KestrelLedger - Standing Instruction | Permission denied.");

  ApplyButtonRights(session, screen, 52);
  EXPECT_EQ(screen.cmdSave.tag, "218NANA");
  session.MultiLoginYN = false;
  EXPECT_FALSE(FnBlnPermitted(session, screen.cmdSave));
}

TEST_F(RightsTest, WhoIsNotRefused) {
  const std::tuple<const char*, bool, const char*> cases[] = {
      {"MEENA", true, "218"},  // allowed, and no row at all
      {"admin", true, ""},
      {"RAVI", false, ""},
      {"O'BRIEN", true, "218"},
  };
  for (const auto& [user, multiLogin, saveTag] : cases) {
    screen.cmdSave.tag.clear();
    Setting("User", user);
    session.MultiLoginYN = multiLogin;
    ApplyButtonRights(session, screen, 52);
    EXPECT_EQ(screen.cmdSave.tag, saveTag) << user;
    EXPECT_EQ(screen.cmdPreset.tag, "300") << user;
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
  EXPECT_EQ(
      company.Rows("SELECT USERNAME, MENUNO, EMPID, ACTIONTEXT, EXTRATEXT, WINUSER FROM SEC_AUDITTRAIL"),
      "RAVI|19|17|Standing Instructions - Loan Created/Updated|by phone|RaviKumar");
  const std::string detail = company.One("SELECT DETAILTEXT FROM SEC_AUDITTRAIL").ToText();
  EXPECT_TRUE(detail.starts_with("::SI Type = Loan:SI Name = Car Loan:Remarks = wife")) << detail;
  EXPECT_EQ(detail.find('\''), std::string::npos);
}

TEST_F(RightsTest, TheAuditSwitchIsAskedOnce) {
  for (const bool on : {true, false}) {
    session.auditOn.reset();
    Sql("UPDATE MAS_OPTSETFEATURE SET AUDITTRAILYN = " + std::string(on ? "1" : "0"));
    EXPECT_EQ(FnBlnAuditOn(session), on);
    Sql("UPDATE MAS_OPTSETFEATURE SET AUDITTRAILYN = 1 - AUDITTRAILYN");
    EXPECT_EQ(FnBlnAuditOn(session), on);
  }
}

TEST_F(RightsTest, AnInstructionsDeedIsAuditedWhileTheAuditIsOn) {
  Sql("DELETE FROM SEC_AUDITTRAIL");
  for (const bool on : {false, true}) {
    session.auditOn = on;
    AuditInstruction(session, 17, "Loan Created/Updated", "::SI Type = Loan");
  }
  EXPECT_EQ(company.Rows("SELECT MENUNO, EMPID, ACTIONTEXT, DETAILTEXT FROM SEC_AUDITTRAIL"),
            "19|17|Standing Instructions - Loan Created/Updated|Loan Created/Updated::SI Type = Loan");
}

TEST_F(RightsTest, TheAuditKnowsAUserWithAQuoteAndFailsAloud) {
  Sql("DELETE FROM SEC_AUDITTRAIL");
  Setting("User", "O'BRIEN");
  session.auditOn = true;
  AuditInstruction(session, 17, "Loan Added", "");
  EXPECT_EQ(company.Rows("SELECT USERNAME FROM SEC_AUDITTRAIL"), "O'BRIEN");
  Sql("DROP TABLE SEC_AUDITTRAIL");
  EXPECT_THROW(AuditInstruction(session, 17, "Loan Added", ""), DatabaseError);
}

TEST_F(RightsTest, TypedTextsAreDoubledByTheSettingsDialect) {
  EXPECT_EQ(session.Sql("A = {} And B = '{}'", 17, "O'Brien|").text(), "A = 17 And B = 'O''Brien|'");
  Setting("DBType", "");
  Setting("DBType", "ACC97");
  EXPECT_EQ(session.Sql("'{}'", "|").text(), "'' & Chr$(124) & ''");
}

TEST_F(RightsTest, EmployeeLocks) {
  Fill("MAS_EMPLOYEE", "(EMPID, EMPNAME, LOCKYN) VALUES (1, 'Asha Rane', 1), (2, 'Vikram Desai', NULL)");
  Fill("SEC_EMPLOCK", "(EMPID, MONTHYEAR, LOCKYN) VALUES (2, 24125, 1)");
  Sql("UPDATE MAS_OPTSETFEATURE SET EMPLOCKYN = 1");
  for (const auto& [employee, locked] : {std::pair{1, 1}, {2, 0}}) {
    EXPECT_EQ(ReadEmpLockStatus(session, employee), locked);
    EXPECT_EQ(session.EmpLockStatus, locked);
  }
  EXPECT_TRUE(IsEmployeeLocked(session, 2, 24121, "DEFAULT"));
  EXPECT_TRUE(IsEmployeeLocked(session, 2, 24125, "24125"));
  EXPECT_FALSE(IsEmployeeLocked(session, 2, 24121, "24124"));
  EXPECT_FALSE(IsEmployeeLocked(session, 1, 24121, "DEFAULT"));
  // What cannot be read is no "free".
  Sql("DROP TABLE SEC_EMPLOCK");
  EXPECT_THROW(IsEmployeeLocked(session, 1, 24121, "DEFAULT"), DatabaseError);
  DropColumn("MAS_EMPLOYEE", "LOCKYN");
  EXPECT_THROW(ReadEmpLockStatus(session, 1), DatabaseError);
}

TEST_F(RightsTest, ClassSecurityFillsTheWorkstationsTable) {
  Fill("SEC_CLASSEMP", "(USERNAME, EMPID) VALUES ('RAVI', 5), ('MEENA', 6)");
  Fill("MAS_EMPLOYEE", "(EMPID, EMPNAME) VALUES (5, 'Asha Rane'), (6, 'Vikram Desai')");
  EXPECT_TRUE(ClassSecurityCondition(session).empty());
  Sql("UPDATE MAS_OPTSET SET CLASSSECURITYN = 1");
  for (const bool forNewestMonth : {true, false}) {
    const std::string condition = ClassSecurityCondition(session, " WHERE EMPID ", forNewestMonth).text();
    EXPECT_EQ(condition, " WHERE EMPID  IN (SELECT EMPID FROM [TMPPC1])");
    EXPECT_EQ(RowsAsText(session, "SELECT EMPID FROM MAS_EMPLOYEE" + condition), "1:5\n");
  }
  Setting("User", "ADMIN");
  EXPECT_FALSE(ClassSecurityCondition(session).empty());  // the administrator is not exempt here
  session.ExtendedYN = true;
  session.WinUserID = "ravi";
  EXPECT_EQ(ClassSecurityCondition(session, " AND ins.EMPID ").text(),
            " AND ins.EMPID  IN (SELECT EMPID FROM [TMPPC1ravi])");
  EXPECT_EQ(ClassSecurityCondition(session).text(), " WHERE EMPID  IN (SELECT EMPID FROM [TMPPC1ravi])");
  EXPECT_GE(session.Cn.FirstValue("SELECT COUNT(*) FROM [TMPPC1ravi]")->ToLong(), 1);
  DropColumn("MAS_OPTSET", "CLASSSECURITYN");
  EXPECT_THROW(ClassSecurityCondition(session), DatabaseError);
}

}  // namespace
}  // namespace ktl
