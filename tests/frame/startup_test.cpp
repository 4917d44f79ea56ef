#include "frame/startup.h"

#include <gtest/gtest.h>

#include <fstream>

#include "common/amounts.h"
#include "frame/connect.h"
#include "frame/frame_fixture.h"
#include "frame/top_level.h"
#include "frame/workstation_objects.h"
#include "runtime/errors.h"

namespace ktl {
namespace {

class ConnectTest : public FrameFixture {
 protected:
  std::string File(const std::string& text) {
    const std::string path = Folder() + "/data.txt";
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
};

std::string Scrambled(const std::string& text) { return clsGenCmn::FnStrEncryptWord(text); }

TEST_F(ConnectTest, HostTellsTheCompany) {
  const std::string trusted = "Provider=SQLNCLI;Server=SRV1;Database=PAYDB;Trusted_Connection=yes;";
  const struct {
    std::string defLnk, connection;
    std::optional<std::string> expected;
  } cases[] = {
      {Scrambled("Provider=SQLite;Data Source=/d/c.kldb;"), "A", "Provider=SQLite;Data Source=/d/c.kldb;"},
      {"anything", "trust", trusted},
      {"anything", "Trust", trusted},
      {"", "TRUST", std::nullopt},
      {"   ", "A", std::nullopt},
  };
  machine.settings.Set("Settings", "DBService", "srv1");
  machine.settings.Set("Settings", "DBName", "PayDb");
  for (const auto& c : cases) {
    machine.settings.Set("Settings", "DefLnk", c.defLnk);
    machine.settings.Set("Settings", "Connection", c.connection);
    EXPECT_EQ(ConnectionOfHost(session), c.expected) << c.defLnk << ", " << c.connection;
  }
  EXPECT_EQ(session.DataPath, machine.folder.path);
}

TEST_F(ConnectTest, DataFileTellsTheCompany) {
  const std::string withUser =
      "Provider=SQLOLEDB.1;Persist Security Info=True;User ID=sa;PWD=p;Initial Catalog=db;Data Source=Srv";
  const std::pair<std::string, std::optional<std::string>> cases[] = {
      {"x:Srv:db:" + Scrambled("sa") + ":" + Scrambled("p") + "\r\nsecond line", withUser},
      {"x:Srv:db", "Provider=SQLNCLI;Server=Srv;Database=db;Trusted_Connection=yes;"},
      {"x:Srv:db::\n", "Provider=SQLNCLI;Server=Srv;Database=db;Trusted_Connection=yes;"},
      {"\nx:Srv:db", std::nullopt},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(ConnectionOfFile(File(text)), expected) << text;

  const std::pair<std::string, long> failures[] = {{File("x:Srv"), 9}, {Folder() + "/missing.txt", 53}};
  for (const auto& [path, number] : failures) {
    try {
      ConnectionOfFile(path);
      ADD_FAILURE() << path;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), number);
    }
  }
  EXPECT_THROW(ConnectionOfFile(File("x:Srv:db:user")), RuntimeError);
}

// A top-level screen that notes what it finds.
class ProbeScreen final : public Screen {
 public:
  ProbeScreen(Session& session, std::string name) : Screen(std::move(name)), session_(session) {}
  void Form_Load() override {
    EnterTopLevel(session_, *this);
    EXPECT_EQ(session_.ActiveForm, this);
    EXPECT_EQ(session_.machine.settings.Get("ExeTalk", "HWNDKTLStIns"), "4711");
  }
  void Form_Unload() override { LeaveTopLevel(session_); }

 private:
  Session& session_;
};

class StartupTest : public FrameFixture {
 protected:
  StartupTest() {
    machine.settings.Set("Settings", "DefLnk", Scrambled(company.ConnectionString()));
    machine.settings.Set("ExeTalk", "StatusHWNDKestrel Ledger", "99");
  }
};

TEST_F(StartupTest, EveryCodeOpensItsScreen) {
  const struct {
    const char* line;
    const char* screen;
    int siType;
    long employee;
    const char* argument;
  } cases[] = {
      {"1500,17,Apr/2010#False#0#0", "modEMIEmp", 0, 17, "Apr/2010"},
      {"1501#False#0#0", "modAdvLoan", 1, 0, ""},
      {"1502#False#0#0", "modAdvLoan", 2, 0, ""},
      {"1503#False#0#0", "modInsGInsSSS", 3, 0, ""},
      {"1504#False#0#0", "modInsGInsSSS", 4, 0, ""},
      {"1505#False#0#0", "modInsGInsSSS", 5, 0, ""},
      {"1507#False#0#0", "modInsGInsSSS", 7, 0, ""},
      {"1508,21.5x#False#0#0", "modSIDetails", 0, 22, ""},
      {"1509, 24121 #False#0#0", "modSalSIAdj", 0, 0, "24121"},
      {"1510#False#0#0", "frmSepInt", 0, 0, ""},
  };
  for (const auto& c : cases) {
    Session run(machine.machine(), desk);
    run.screens.Add(c.screen, [&](Session& opened, Screen*) {
      EXPECT_EQ(opened.SIType, c.siType) << c.line;
      EXPECT_EQ(opened.FormEmpId, c.employee) << c.line;
      EXPECT_EQ(opened.FormArgText, c.argument) << c.line;
      return std::make_unique<ProbeScreen>(opened, c.screen);
    });
    EXPECT_EQ(RunProgram(run, c.line), 0) << c.line;
    EXPECT_EQ(desk.ShownScreens().back(), c.screen) << c.line;
  }
  EXPECT_TRUE(desk.Boxes().empty());
  EXPECT_EQ(machine.settings.Get("ExeTalk", "HWNDKTLStIns"), "0");
  ASSERT_EQ(machine.statusBox.texts.size(), std::size(cases));
  EXPECT_EQ(machine.statusBox.texts.back().windowHandle, 99);
  EXPECT_EQ(machine.statusBox.texts.back().text, "  ");
}

TEST_F(StartupTest, TheScreenFindsTheSessionFilled) {
  Sql("UPDATE MAS_OPTSET SET TDSMAR2FEB = 1, EMPIDCAP = 'Code'");
  Sql("UPDATE SEC_USERLIST SET MULTILOGIN = 1");
  Sql("INSERT INTO SEC_USERLIST (UserID, USERNAME, GROUPID, READONLYYN) VALUES (2, 'RAVI', 3, 1)");
  machine.settings.Set("Settings", "User", "RAVI");
  machine.settings.Set("ExeTalk", "KTLExtendedYN", "True");
  machine.settings.Set("Settings", "WinUserID", "ravi");
  session.screens.Add("modAdvLoan", [](Session& opened, Screen*) {
    return std::make_unique<ProbeScreen>(opened, "modAdvLoan");
  });
  ASSERT_EQ(RunProgram(session, "1502#True#4#0$Loans #1"), 0);
  EXPECT_EQ(session.title, "Loans #1");
  EXPECT_TRUE(session.MultiLoginYN);  // of the ADMIN row
  EXPECT_TRUE(session.ReadOnlyUser);
  EXPECT_TRUE(session.TdsMar2Feb);
  EXPECT_EQ(session.options.EMPIDCAP, "Code");
  EXPECT_EQ(session.FilterTableName, "[TMPFILTERPC1ravi]");
  EXPECT_EQ(session.EmployeeViewName, "[vw_MAS_EMPLOYEEPC1ravi]");
  EXPECT_TRUE(session.ReportFlag);
  EXPECT_EQ(session.ReportNumber, 4);
}

// The user's name is put in as it stands: a quote in it fails the statement, which is told, and the start
// goes on.
TEST_F(StartupTest, AFailedStatementDoesNotStopTheStart) {
  machine.settings.Set("Settings", "User", "O'BRIEN");
  session.ReadOnlyUser = true;
  session.screens.Add("modAdvLoan", [](Session& opened, Screen*) {
    return std::make_unique<ProbeScreen>(opened, "modAdvLoan");
  });
  EXPECT_EQ(RunProgram(session, "1501#False#0#0"), 0);
  ASSERT_EQ(desk.Boxes().size(), 1u);
  EXPECT_EQ(desk.LastBox().icon, Icon::Critical);
  EXPECT_FALSE(session.ReadOnlyUser);
}

TEST_F(StartupTest, AHelpFileCountsOnlyWhenItIsThere) {
  ProbeScreen screen(session, "modAdvLoan");
  const std::string file = Folder() + "/help.chm";
  machine.settings.Set("ExeTalk", "HelpFile", file);
  EnterTopLevel(session, screen);
  EXPECT_EQ(session.helpFile, "");
  std::ofstream{file};
  EnterTopLevel(session, screen);
  EXPECT_EQ(session.helpFile, file);
}

TEST_F(StartupTest, NoScreenIsOpened) {
  const struct {
    const char* line;
    const char* text;
    Icon icon;
  } cases[] = {
      {"1506#False#0#0", "Invalid form reference", Icon::Critical},
      {"1499#False#0#0", "Invalid form reference", Icon::Critical},
      {"1511#False#0#0", "Invalid form reference", Icon::Critical},
      {"1510#False#0#0", "The screen \"frmSepInt\" is not part of this build yet.", Icon::Information},
  };
  for (const auto& c : cases) {
    Session run(machine.machine(), desk);
    EXPECT_EQ(RunProgram(run, c.line), 1);
    ASSERT_EQ(desk.Boxes().size(), 1u);
    EXPECT_EQ(desk.LastBox().text, c.text);
    EXPECT_EQ(desk.LastBox().icon, c.icon);
    EXPECT_EQ(desk.LastBox().title, kApplicationTitle);
    desk.TakeBoxes();
  }
  EXPECT_EQ(machine.statusBox.texts.size(), std::size(cases));

  machine.settings.Set("Settings", "DefLnk", " ");
  Session run(machine.machine(), desk);
  EXPECT_EQ(RunProgram(run, "1502#False#0#0"), 1);
  EXPECT_EQ(desk.LastBox().text, "Please open the Kestrel Ledger file.");
  EXPECT_EQ(desk.LastBox().icon, Icon::Exclamation);
  EXPECT_FALSE(run.Cn.IsOpen());
}

TEST_F(StartupTest, WhatCannotBeReadEndsTheRun) {
  EXPECT_THROW(RunProgram(session, "1502#False"), RuntimeError);
  machine.settings.Set("Settings", "DefLnk", Scrambled("Provider=SQLite;Data Source=/nowhere/at/all.kldb;"));
  EXPECT_THROW(RunProgram(session, "1502#False#0#0"), DatabaseError);
  machine.settings.Set("ExeTalk", "KTLExtendedYN", "perhaps");
  EXPECT_THROW(RunProgram(session, "1502#False#0#0"), RuntimeError);
}

TEST_F(StartupTest, EachStartSetsTheFilterBack) {
  Sql("DELETE FROM MAS_EMPLOYEE");
  Sql("INSERT INTO MAS_EMPLOYEE (EMPID, EMPNAME) VALUES (1, 'Asha Rane')");
  Connect();
  PrepareWorkstationObjects(session);
  Sql("UPDATE [TMPFILTERPC1] SET FILTERYN1 = 0, REPTYN1 = 0");
  Sql("INSERT INTO MAS_EMPLOYEE (EMPID, EMPNAME) VALUES (2, 'Vikram Desai')");
  PrepareWorkstationObjects(session);
  EXPECT_EQ(Number("SELECT COUNT(*) FROM [vw_MAS_EMPLOYEEPC1] WHERE FILTERYN1 = 1 AND REPTYN1 = 1"), 2);
  EXPECT_EQ(Number("SELECT COUNT(*) FROM SYS.TABLES WHERE NAME = 'TMPFILTERPC1'"), 1);
}

TEST_F(StartupTest, AFailureToClearTheStatusLineIsShown) {
  machine.statusBox.failWith = 521;
  StatusClose(session);
  EXPECT_EQ(
      desk.LastBox().text,
      "Your system is running 'Out of Memory'.\r\n\r\nClose the appliations currently running or restart the "
      "computer to resolve the problem.");
  machine.statusBox.failWith = 70;
  StatusClose(session);
  EXPECT_EQ(desk.LastBox().text, "The clipboard cannot be opened");
  EXPECT_EQ(desk.LastBox().icon, Icon::Critical);
  EXPECT_EQ(desk.LastBox().title, "Kestrel Ledger");
}

}  // namespace
}  // namespace ktl
