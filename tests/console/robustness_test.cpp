#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "company/company.h"
#include "database/connection.h"
#include "database/drivers/sqlite_database.h"
#include "database/recordset.h"
#include "machine/settings_store.h"
#include "shell.h"
#include "support/company_store.h"
#include "support/sample_company.h"

extern char** environ;

// The whole program against what it may find on a bad day.

namespace ktl {
namespace {

namespace fs = std::filesystem;

struct Outcome {
  int status = 0;
  std::string out;
  std::string err;
};

class BadDay : public testing::Test {
 protected:
  fs::path Path(const std::string& name) const { return sample.Folder() / name; }

  Outcome Play(const std::string& commandLine, const std::string& script = "print cmbEmpName\n",
               const std::string& settings = "settings.ini") const {
    std::ofstream(Path("script")) << script;
    Outcome outcome;
    outcome.status =
        RunShell("cd " + ShellQuoted(sample.Folder().string()) + " && KTL_SETTINGS=\"$PWD/" + settings +
                 "\" KTL_FOLDER=\"$PWD\" KTL_TODAY=2026-10-15 " KTL_BUILD_DIR "/KTLStInsConsole " +
                 ShellQuoted(commandLine) + " script >out 2>err");
    outcome.out = ReadAll(Path("out"));
    outcome.err = ReadAll(Path("err"));
    return outcome;
  }

  std::string Rows(const std::string& sql) const {
    Connection cn;
    cn.Open(sample.ConnectionString());
    std::string rows;
    for (Recordset rs(cn, sql); !rs.Eof(); rs.MoveNext()) rows += rs[0].TextOrEmpty() + "\n";
    return rows;
  }

  const test::SampleCompany sample;
};

TEST_F(BadDay, CommandLinesThatNameNoScreenEndWithOneLine) {
  // What cannot be taken apart is told with an example, before anything is opened.
  for (const char* line : {"", "1502#False", "1502#perhaps#0#0", "1502#False#zero#0", "99999999999#False#0#0",
                           "1502#False#32768#0"}) {
    const Outcome outcome = Play(line, "", "no-such.ini");
    EXPECT_EQ(outcome.status, 2) << line;
    EXPECT_EQ(outcome.out, "") << line;
    EXPECT_NE(outcome.err.find(std::string("\"") + line + "\""), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.err.find("1502#False#0#0"), std::string::npos) << outcome.err;
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
  }
}

TEST_F(BadDay, ATranscriptThatCannotBeWrittenIsAFailure) {
  std::ofstream(Path("script")) << "screen\n";
  const std::string run = "cd " + ShellQuoted(sample.Folder().string()) +
                          " && KTL_SETTINGS=settings.ini KTL_FOLDER=. " KTL_BUILD_DIR
                          "/KTLStInsConsole '1502#False#0#0' script 2>err >";
  EXPECT_EQ(RunShell(run + "out"), 0);
  EXPECT_EQ(RunShell(run + "/dev/full"), 1);
  EXPECT_NE(ReadAll(Path("err")).find("cannot be written"), std::string::npos);
}

TEST_F(BadDay, WhatTheProgramsMakeOnlyTheirUserCanRead) {
  KTL_NEEDS_FILE();
  ASSERT_EQ(RunShell("cd " + ShellQuoted(sample.Folder().string()) +
                     " && umask 022 && mkdir own && " KTL_BUILD_DIR
                     "/KTLCompany create own/c.kldb --settings own/s.ini >/dev/null && echo close | "
                     "KTL_SETTINGS=own/s.ini "
                     "KTL_FOLDER=own KTL_SQL_LOG=own/log " KTL_BUILD_DIR "/KTLStInsConsole '1502#False#0#0'"),
            0);
  std::size_t files = 0;
  for (const auto& file : fs::directory_iterator(Path("own"))) {
    EXPECT_EQ(file.status().permissions() & (fs::perms::group_all | fs::perms::others_all), fs::perms::none)
        << file.path();
    ++files;
  }
  EXPECT_GE(files, 4U);  // company, local store, settings, log
}

TEST_F(BadDay, SettingsThatCannotBeReadAreNamed) {
  std::ofstream(Path("garbage.ini")) << "no section here\n\x01\xff\n";
  fs::create_directory(Path("folder.ini"));
  for (const char* settings : {"garbage.ini", "folder.ini"}) {
    const Outcome outcome = Play("1502#False#0#0", "", settings);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find(settings), std::string::npos) << outcome.err;
  }
  const Outcome none = Play("1502#False#0#0", "", "absent.ini");
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.out, "box | Exclamation | Kestrel Ledger | Please open the Kestrel Ledger file. | OK\n");
}

const char* const kEnterLoan =
    "pick cmbEmpName Ajay Patel\nclick cmdNew\npick cmbALName Consumer Loan\npick cmbInstitution Deccan "
    "Co-operative "
    "Bank\ntext txtLoanAccNo A'1\ntext txtAdvDate 15/10/2026\ntext txtAdvAmount 360000\ntext txtInstlAmt "
    "1000\n";

TEST_F(BadDay, LongAndForeignTextsAreKeptWhole) {
  std::string remark;
  while (remark.size() < 5000) remark += "Ajay's \"50%\" [x]_ शुल्क; -- ";
  const Outcome outcome =
      Play("1502#False#0#0", kEnterLoan + ("text txtRemarks " + remark) +
                                 "\ntext txtRecvrFrom Oct/2026\nclick cmdSave\nanswer No\nclose\n");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(Rows("SELECT REMARKS FROM INS_ADVLOAN WHERE EMPID = 49"),
            remark.substr(0, remark.find_last_not_of(' ') + 1) + "\n");
  EXPECT_EQ(Rows("SELECT LOANACNO FROM INS_ADVLOAN WHERE EMPID = 49"), "A'1\n");
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_EMIDETAIL WHERE EMPID = 49"), "360\n");
}

pid_t Start(const std::vector<std::string>& arguments, const std::vector<std::string>& environment,
            const std::string& input = "/dev/null") {
  std::vector<char*> argv, env;
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  for (const std::string& variable : environment) env.push_back(const_cast<char*>(variable.c_str()));
  for (char** variable = environ; *variable != nullptr; ++variable) env.push_back(*variable);
  argv.push_back(nullptr);
  env.push_back(nullptr);
  posix_spawn_file_actions_t quiet;
  posix_spawn_file_actions_init(&quiet);
  posix_spawn_file_actions_addopen(&quiet, 0, input.c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&quiet, 1, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  if (posix_spawn(&child, argv[0], &quiet, nullptr, argv.data(), env.data()) != 0) child = 0;
  posix_spawn_file_actions_destroy(&quiet);
  return child;
}

// Asked to end, a program ends without a question, in the middle of an entry or while another program of the
// product runs in front of it, and leaves no number of a window that has gone.
TEST_F(BadDay, ASignalOrAWrongScriptLeavesNoWindowNumberBehind) {
  SettingsFile settings(Path("settings.ini"));
  const auto talk = [&](const std::string& key) { return settings.Get("ExeTalk", key, "none"); };
  EXPECT_EQ(Play("1502#False#0#0", "click cmdNowhere\n").status, 2);
  EXPECT_EQ(talk("HWNDKTLStInsConsole"), "0");
  settings.Set("ExeTalk", "StatusHWNDKestrel Ledger", "99");
  std::ofstream(Path("KTLSIRep")) << "#!/bin/sh\necho $$ >" << Path("sibling") << "\nexec sleep 600\n";
  fs::permissions(Path("KTLSIRep"), fs::perms(0700));
  ASSERT_EQ(::mkfifo(Path("waits").c_str(), 0600), 0);
  const std::tuple<std::string, std::string> cases[] = {
      {"KTLStInsConsole", kEnterLoan}, {"KTLStInsConsole", "click cmdReport\n"}, {"KTLStIns", ""}};
  for (const auto& [program, text] : cases) {
    if (!fs::exists(KTL_BUILD_DIR "/" + program)) continue;            // without a desktop
    std::fstream script(Path("waits"), std::ios::in | std::ios::out);  // so that nobody waits to open it
    const pid_t child = Start({KTL_BUILD_DIR "/" + program, "1502#False#0#0"},
                              {"KTL_SETTINGS=" + Path("settings.ini").string(), "QT_QPA_PLATFORM=offscreen",
                               "KTL_FOLDER=" + sample.Folder().string()},
                              Path("waits").string());
    ASSERT_GT(child, 0);
    script << text << std::flush;
    const bool launches = text.starts_with("click");
    while (launches ? ReadAll(Path("sibling")).empty() : talk("HWND" + program) != std::to_string(child))
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    kill(child, SIGTERM);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1) << program << status;
    EXPECT_EQ(talk("HWND" + program), "0");
    EXPECT_EQ(talk("StatusHWNDKestrel Ledger"), "99");
    EXPECT_NE(RunShell("kill -0 \"$(cat " + Path("sibling").string() + " 2>/dev/null)\" 2>/dev/null"), 0);
  }
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_ADVLOAN WHERE EMPID = 49"), "0\n");
}

// Programs of one machine share the workstation's objects, which the first of them makes.
TEST_F(BadDay, ManyFirstStartsAtOnce) {
  for (int round = 0; round < 3; ++round) {
    sample.Reset();
    std::vector<pid_t> children;
    for (int i = 0; i < 6; ++i) {
      children.push_back(
          Start({KTL_BUILD_DIR "/KTLStInsConsole", "1502#False#0#0"},
                {"KTL_SETTINGS=" + Path("settings.ini").string(), "KTL_FOLDER=" + sample.Folder().string()}));
    }
    for (const pid_t child : children) {
      int status = 0;
      ASSERT_EQ(waitpid(child, &status, 0), child);
      EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    }
  }
}

// Cut off anywhere, a save leaves a sound company with nothing, the instruction, or the instruction with its
// first months.
class KilledAtWork : public BadDay {
 protected:
  // Plays the script on the company as it was, and kills the program in the midst of it.
  void PlayAndKill(const char* commandLine, std::chrono::milliseconds after) const {
    sample.Reset();
    std::ofstream(Path("script")) << script;
    const pid_t child = Start({KTL_BUILD_DIR "/KTLStInsConsole", commandLine, Path("script").string()},
                              {"KTL_SETTINGS=" + Path("settings.ini").string(),
                               "KTL_FOLDER=" + sample.Folder().string(), "KTL_TODAY=2026-10-15"});
    ASSERT_GT(child, 0);
    std::this_thread::sleep_for(after);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    sample.AwaitQuiet();
    if (test::CompaniesAreOnServer()) return;
    SqliteDatabase company(Path("company.kldb").string(), SqliteDatabase::Mode::Existing);
    ASSERT_EQ(company.Text("PRAGMA integrity_check"), "ok");
  }

  std::string script;
};

TEST_F(KilledAtWork, AnAllotmentHasGivenEachTheWholeOrNothing) {
  script =
      "click cmdMultiAllot\ntick chkSelEmployee on\ntick lstEmployee 46 off\npick cmbSIName Tour Advance\n"
      "text txtAdvDate 15/10/2026\ntext txtAdvAmount 24000\ntext txtInstlAmt 100\ntext txtRecvrFrom Nov/2026\n"
      "answer Yes\nclick cmdSave\nclose\n";
  for (int run = 0; run < 12; ++run) {
    PlayAndKill("1501#False#0#0", std::chrono::milliseconds(60 + run * 40));
    EXPECT_EQ(
        Rows(
            "SELECT A.EMPID FROM INS_ADVLOAN A WHERE A.SINAME = 'Tour Advance' AND A.ACTAMT = 24000 AND 240 "
            "<> (SELECT COUNT(*) FROM INS_EMIDETAIL E WHERE E.EMPID = A.EMPID AND E.SITYPE = 1 AND E.SERIALNO "
            "= A.SERIALNO)"),
        "");
    EXPECT_EQ(Rows("SELECT COUNT(*) FROM INS_ADVLOAN WHERE SINAME = 'Tour Advance' AND ACTAMT = 24000"),
              Rows("SELECT COUNT(*) FROM SEC_AUDITTRAIL"));
  }
}

TEST_F(KilledAtWork, ASaveLeavesASoundCompany) {
  script = kEnterLoan + std::string("text txtRecvrFrom Oct/2026\nclick cmdSave\nanswer No\nclose\n");
  int partly = 0;
  for (int run = 0; run < 24; ++run) {
    PlayAndKill("1502#False#0#0", std::chrono::milliseconds(20 + run * 12));
    const std::string loans = Rows("SELECT COUNT(*) FROM INS_ADVLOAN WHERE EMPID = 49");
    const std::string months = Rows("SELECT COUNT(*) FROM INS_EMIDETAIL WHERE EMPID = 49");
    if (loans == "0\n") {
      EXPECT_EQ(months, "0\n");
    } else {
      EXPECT_EQ(months, Rows("SELECT ISNULL(MAX(COUNTER), 0) FROM INS_EMIDETAIL WHERE EMPID = 49"));
      if (months != "360\n") ++partly;
    }
  }
  RecordProperty("killed_half_way", partly);
}

}  // namespace
}  // namespace ktl
