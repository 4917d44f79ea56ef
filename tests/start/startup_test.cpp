#include "start/startup.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <optional>
#include <thread>
#include <tuple>

#include "common/amounts.h"
#include "database/drivers/sqlite_database.h"
#include "frame/top_level.h"
#include "frame/workstation_objects.h"
#include "start/connect.h"
#include "support/errors.h"
#include "support/frame_fixture.h"

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
  const std::tuple<std::string, const char*, std::optional<std::string>> cases[] = {
      {Scrambled("Provider=SQLite;Data Source=/d/c.kldb;"), "A", "Provider=SQLite;Data Source=/d/c.kldb;"},
      {"anything", "trust", trusted},
      {"anything", "Trust", trusted},
      {"", "TRUST", std::nullopt},
      {"   ", "A", std::nullopt},
  };
  Setting("DBService", "srv1");
  Setting("DBName", "PayDb");
  for (const auto& [defLnk, connection, expected] : cases) {
    Setting("DefLnk", defLnk);
    Setting("Connection", connection);
    EXPECT_EQ(ConnectionOfHost(session), expected) << defLnk << ", " << connection;
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

  EXPECT_EQ(ErrorOf([&] { ConnectionOfFile(Folder() + "/missing.txt"); }), 53);
  for (const char* text : {"x:Srv", "x:Srv:db:user"})
    EXPECT_EQ(ErrorOf([&] { ConnectionOfFile(File(text)); }), 9) << text;
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
    Setting("DefLnk", Scrambled(company.ConnectionString()));
    Talk("StatusHWNDKestrel Ledger", "99");
  }
  static std::unique_ptr<Screen> Probe(Session& opened, Screen*) {
    return std::make_unique<ProbeScreen>(opened, "modAdvLoan");
  }
};

TEST_F(StartupTest, EveryCodeOpensItsScreen) {
  const std::tuple<const char*, const char*, int, long, const char*> cases[] = {
      // screen, SIType, employee, argument
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
      {"1511#False#0#0", "modLockMonth", 0, 0, ""},
  };
  for (const auto& [line, screen, siType, employee, argument] : cases) {
    SCOPED_TRACE(line);
    Session run(machine.machine(), desk);
    run.screens.Add(screen, [&](Session& opened, Screen*) {
      EXPECT_EQ(std::tie(run.SIType, run.FormEmpId, run.FormArgText), std::tie(siType, employee, argument));
      return std::make_unique<ProbeScreen>(opened, screen);
    });
    EXPECT_EQ(RunProgram(run, line), 0);
    EXPECT_EQ(desk.ShownScreens().back(), screen);
  }
  EXPECT_TRUE(desk.Boxes().empty());
  EXPECT_EQ(machine.settings.Get("ExeTalk", "HWNDKTLStIns"), "0");
  ASSERT_EQ(machine.statusBox.texts.size(), std::size(cases));
  EXPECT_EQ(machine.statusBox.texts.back().windowHandle, 99);
  EXPECT_EQ(machine.statusBox.texts.back().text, "  ");
}

TEST_F(StartupTest, AMissingArgumentIsToldByExample) {
  for (const char* code : {"1500,17", "1508", "1509"}) {
    Session run(machine.machine(), desk);
    try {
      RunProgram(run, std::string(code) + "#False#0#0");
      ADD_FAILURE() << code;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 9);
      EXPECT_NE(error.description().find(std::string(code, 4) + " needs "), std::string::npos);
    }
  }
}

TEST_F(StartupTest, TheScreenFindsTheSessionFilled) {
  Sql("UPDATE MAS_OPTSET SET TDSMAR2FEB = 1, EMPIDCAP = 'Code'");
  Fill(
      "SEC_USERLIST",
      "(UserID, USERNAME, GROUPID, MULTILOGIN, READONLYYN) VALUES (1, 'RAVI', 3, 0, 1), (2, 'Admin', 1, 1, 0), "
      "(3, 'MEENA', 3, 0, 0)");
  Setting("User", "RAVI");
  Talk("KTLExtendedYN", "True");
  Setting("WinUserID", "12");
  session.screens.Add("modAdvLoan", Probe);
  ASSERT_EQ(RunProgram(session, "1502#True#4#0$Loans #1"), 0);
  EXPECT_EQ(session.title, "Loans #1");
  EXPECT_TRUE(session.MultiLoginYN);  // of the ADMIN row
  EXPECT_TRUE(session.ReadOnlyUser);
  EXPECT_TRUE(session.TdsMar2Feb);
  EXPECT_EQ(session.options.EMPIDCAP, "Code");
  EXPECT_EQ(session.FilterTableName + session.EmployeeViewName, "[TMPFILTERPC112][vw_MAS_EMPLOYEEPC112]");
  EXPECT_TRUE(session.ReportFlag);
  EXPECT_EQ(session.ReportNumber, 4);
}

TEST_F(StartupTest, WithoutSettingsTheUserIsAdminOfThisMachine) {
  Sql("UPDATE SEC_USERLIST SET READONLYYN = 1");
  Setting("WinUserID", "12");
  session.screens.Add("modAdvLoan", Probe);
  ASSERT_EQ(RunProgram(session, "1502#False#0#0"), 0);
  EXPECT_TRUE(session.ReadOnlyUser);
  EXPECT_EQ(session.FilterTableName, "[TMPFILTERPC1]");
}

// The neighbour lets go after a while: whoever waits longer than told would get through.
TEST_F(StartupTest, TheTimeOutsOfTheSettingsReachTheConnection) {
  KTL_NEEDS_FILE();
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"CONNTIME", "COMDTIME", "PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE"},
      {"COMDTIME", "CONNTIME", "BEGIN IMMEDIATE"}};
  company.Cn().Close();
  for (const auto& [none, patient, lock] : cases) {
    Setting(none, "0");
    Setting(patient, "30");
    std::optional<SqliteDatabase> neighbour(std::in_place, company.File().string(),
                                            SqliteDatabase::Mode::Existing);
    neighbour->RunScript(lock);
    std::thread letsGo([&] {
      std::this_thread::sleep_for(std::chrono::seconds(1));
      neighbour.reset();
    });
    EXPECT_THROW(
        {
          Connect();
          session.Cn.Execute("UPDATE MAS_OPTSET SET ROUNDTYPE = 1");
        },
        DatabaseError)
        << none;
    letsGo.join();
    session.Cn.Close();
  }
}

// The user's name and number come from a file that anybody may have written.
TEST_F(StartupTest, WhatTheSettingsSayOfTheUserIsNoStatement) {
  Sql("INSERT INTO SEC_USERLIST (UserID, USERNAME, GROUPID, READONLYYN) VALUES (2, 'O''BRIEN', 3, 1)");
  Sql("INSERT INTO INS_ADVLOAN (EMPID, SITYPE, SERIALNO, SINAME) VALUES (1, 1, 1, 'Festival Advance')");
  const std::tuple<const char*, const char*, bool, const char*> cases[] = {
      {"O'BRIEN", "7", true, "7"},
      {"x' DELETE FROM INS_ADVLOAN --", "5; DELETE FROM INS_ADVLOAN", false, ""},
      {"ADMIN", "-1", false, ""}};
  session.screens.Add("modAdvLoan", Probe);
  for (const auto& [user, number, readOnly, taken] : cases) {
    Setting("User", user);
    Setting("WinUserID", number);
    EXPECT_EQ(RunProgram(session, "1501#False#0#0"), 0) << user;
    EXPECT_EQ(session.ReadOnlyUser, readOnly) << user;
    EXPECT_EQ(session.WinUserID, taken);
  }
  EXPECT_TRUE(desk.Boxes().empty());
  EXPECT_EQ(Number("SELECT COUNT(*) FROM INS_ADVLOAN"), 1);
}

// A failed statement is told and the start goes on, with a user who may not write.
TEST_F(StartupTest, AReadOnlyFlagThatCannotBeReadMeansReadOnly) {
  DropColumn("SEC_USERLIST", "READONLYYN");
  session.screens.Add("modAdvLoan", Probe);
  EXPECT_EQ(RunProgram(session, "1501#False#0#0"), 0);
  EXPECT_TRUE(desk.TakeLines().starts_with("Critical | "));
  EXPECT_TRUE(session.ReadOnlyUser);
}

TEST_F(StartupTest, AHelpFileCountsOnlyWhenItIsThere) {
  ProbeScreen screen(session, "modAdvLoan");
  const std::string file = Folder() + "/help.chm";
  Talk("HelpFile", file);
  EnterTopLevel(session, screen);
  EXPECT_EQ(session.helpFile, "");
  Connect();
  Fill("MAS_COMPANY", "(CMPNAME) VALUES ('Neem & Sons')");
  Setting("User", "LEELA");
  std::ofstream{file};
  EnterTopLevel(session, screen);
  EXPECT_EQ(session.helpFile, file);
  EXPECT_EQ(desk.place.company + "|" + desk.place.user + "|" + desk.place.helpFile,
            "Neem & Sons|LEELA|" + file);
}

TEST_F(StartupTest, WhoWaitsForAnotherWorkstationIsAskedUntilTheProgramIsToEnd) {
  Connect();
  desk.keepsWaiting = [asked = 0](bool mayGiveUp) mutable { return mayGiveUp && ++asked < 3; };
  for (const bool mustEnd : {false, true}) {
    machine.environment.mustEnd = mustEnd;
    const Transaction other(company.Cn());
    EXPECT_THROW(session.Cn.BeginTrans(), DatabaseError);
    if (mustEnd) desk.keepsWaiting = [](bool) { return ADD_FAILURE(), false; };
  }
}

TEST_F(StartupTest, NoScreenIsOpened) {
  const std::string invalid = "Critical | KestrelLedger - Standing Instruction | Invalid form reference";
  const std::pair<const char*, std::string> cases[] = {
      {"1506#False#0#0", invalid},
      {"1499#False#0#0", invalid},
      {"1512#False#0#0", invalid},
      {"letters#False#0#0$Pay", "Critical | Pay | Invalid form reference"},
  };
  for (const auto& [line, box] : cases) {
    Session run(machine.machine(), desk);
    EXPECT_EQ(RunProgram(run, line), 1);
    EXPECT_EQ(desk.TakeLines(), box);
  }
  EXPECT_EQ(machine.statusBox.texts.size(), std::size(cases));

  Setting("DefLnk", " ");
  Session run(machine.machine(), desk);
  EXPECT_EQ(RunProgram(run, "1502#False#0#0"), 1);
  EXPECT_EQ(desk.TakeLines(), "Exclamation | Kestrel Ledger | Please open the Kestrel Ledger file.");
  EXPECT_FALSE(run.Cn.IsOpen());
}

TEST_F(StartupTest, WhatCannotBeReadEndsTheRun) {
  Setting("DefLnk", Scrambled("Provider=SQLite;Data Source=/nowhere/at/all.kldb;"));
  const auto failure = [&] { return DescriptionOf([&] { RunProgram(session, "1502#False#0#0"); }); };
  EXPECT_EQ(failure(), "The company file /nowhere/at/all.kldb does not exist.");
  Setting("CONNTIME", "99999999999");
  EXPECT_EQ(failure(), "The setting CONNTIME: Overflow");
  Talk("KTLExtendedYN", "perhaps");
  EXPECT_EQ(failure(), "The setting KTLExtendedYN: Type mismatch");
  Talk("KTLExtendedYN", "False");
  EXPECT_EQ(DescriptionOf([&] { ConnectionOfFile("/nowhere.txt"); }), "/nowhere.txt: File not found");
  Setting("CONNTIME", "600");
  Connect();
  for (const auto& [column, value] : {std::pair("ROUNDTYPE", "256"), std::pair("LEVMINDAYS", "'many'")}) {
    if (test::CompaniesAreOnServer() && *value == '\'') continue;  // a server takes no such value
    Sql("UPDATE MAS_OPTSET SET ROUNDTYPE = 1");
    Sql(fmt::format("UPDATE MAS_OPTSET SET {} = {}", column, value));
    EXPECT_TRUE(DescriptionOf([&] { LoadOptionSet(session); }).starts_with(column));
  }
  // Whether rights count at all.
  DropColumn("SEC_USERLIST", "MULTILOGIN");
  Setting("DefLnk", Scrambled(company.ConnectionString()));
  EXPECT_THROW(RunProgram(session, "1502#False#0#0"), DatabaseError);
}

TEST_F(StartupTest, EachStartSetsTheFilterBack) {
  Fill("MAS_EMPLOYEE", "(EMPID, EMPNAME) VALUES (1, 'Asha Rane')");
  Connect();
  PrepareWorkstationObjects(session);
  Sql("UPDATE [TMPFILTERPC1] SET FILTERYN1 = 0, REPTYN1 = 0");
  Sql("INSERT INTO MAS_EMPLOYEE (EMPID, EMPNAME) VALUES (2, 'Vikram Desai')");
  PrepareWorkstationObjects(session);
  EXPECT_EQ(Number("SELECT COUNT(*) FROM [vw_MAS_EMPLOYEEPC1] WHERE FILTERYN1 = 1 AND REPTYN1 = 1"), 2);
  EXPECT_EQ(Number("SELECT COUNT(*) FROM [TMPFILTERPC1]"), 2);
  EXPECT_EQ(Number("SELECT COUNT(*) FROM SYS.TABLES WHERE NAME = 'TMPFILTERPC1'"), 1);
}

TEST_F(StartupTest, AFailureToClearTheStatusLineIsShown) {
  for (const long number : {521, 70}) {
    machine.statusBox.failWith = number;
    StatusClose(session);
  }
  EXPECT_EQ(
      desk.TakeLines(),
      "Critical | Kestrel Ledger | Your system is running 'Out of Memory'.\r\n\r\nClose the appliations "
      "currently running or restart the computer to resolve the problem.\nCritical | Kestrel Ledger | The "
      "clipboard cannot be opened");
}

}  // namespace
}  // namespace ktl
