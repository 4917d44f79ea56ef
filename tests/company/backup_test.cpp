#include "company/backup.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/wait.h>

#include <thread>

#include "database/connection.h"
#include "database/drivers/sqlite_file.h"
#include "machine/files.h"
#include "sample_company.h"

namespace ktl {
namespace {

namespace fs = std::filesystem;

class BackupTest : public testing::Test {
 protected:
  BackupTest() { Make(); }
  void Make(bool force = false) { CreateCompany({.file = company, .empty = true, .force = force}); }

  // What the program saves is in the log alone while it runs.
  void Save(Connection& program, int mark) const {
    if (!program.IsOpen()) program.Open("Provider=SQLite;Data Source=" + company.string());
    program.Execute("UPDATE SEC_USERLIST SET GROUPID = " + std::to_string(mark));
  }
  void SaveAndCrash(int mark) const {
    const pid_t child = ::fork();
    if (child == 0) {
      [&]() noexcept {
        Connection program;
        Save(program, mark);
        ::kill(::getpid(), SIGKILL);
      }();
    }
    ::waitpid(child, nullptr, 0);
    EXPECT_TRUE(fs::exists(company.string() + "-wal"));
  }
  static std::string Mark(const fs::path& file) { return Ask(file, "SELECT GROUPID FROM SEC_USERLIST"); }

  Folder folder;
  fs::path company = folder / "a.kldb", copy = folder / "b.kldb";
};

TEST_F(BackupTest, HoldsWhatIsInTheLogOfACompanyAtWork) {
  Connection program;
  for (const int mark : {77, 78}) {
    Save(program, mark);
    BackUpCompany({company, copy, mark == 78});
    EXPECT_EQ(Mark(copy), std::to_string(mark));
  }
  EXPECT_EQ(ErrorOf([&] {
              BackUpCompany({company, copy});
            }),
            copy.string() + ": exists already, --force replaces it");
  EXPECT_EQ(Ask(copy, "PRAGMA journal_mode"), "delete");
  EXPECT_EQ(fs::status(copy).permissions(), fs::perms(0600));
}

// The company as it crashed; the copy put back by hand; a damaged company; one that is gone: a log is there.
TEST_F(BackupTest, RestoreDoesNotMixTheCopyWithAnOldLog) {
  BackUpCompany({company, copy});
  const std::string mark = Mark(copy);
  fs::create_symlink(company, folder / "link");
  const std::function<void()> spoil[] = {
      [] {},
      [&] { fs::copy_file(copy, company, fs::copy_options::overwrite_existing); },
      [&] { std::ofstream(company) << std::string(9000, 'x'); },
      [&] { fs::remove(company); },
  };
  for (const auto& happens : spoil) {
    SaveAndCrash(66);
    happens();
    RestoreCompany({copy, folder / "link", true});
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(Mark(company) + Ask(company, "PRAGMA journal_mode"), mark + "wal");
  }
}

TEST_F(BackupTest, WhatAProgramHasOpenIsNotReplaced) {
  BackUpCompany({company, copy});
  Connection program;  // which does nothing
  program.Open("Provider=SQLite;Data Source=" + company.string());
  const std::function<void()> replacing[] = {[&] {
                                               RestoreCompany({copy, company, true});
                                             },
                                             [&] {
                                               BackUpCompany({copy, company, true});
                                             },
                                             [&] { Make(true); }};
  for (const auto& replace : replacing)
    EXPECT_EQ(ErrorOf(replace), company.string() + " is open in another program.");
  Save(program, 55);
  program.Close();
  EXPECT_EQ(Mark(company), "55");
  for (const auto& replace : replacing) EXPECT_EQ(ErrorOf(replace), "done");
}

TEST_F(BackupTest, AStartThatWaitsOpensWhatHasComeInPlace) {
  SaveAndCrash(55);
  BackUpCompany({company, copy});
  std::optional<SqliteDatabase> taken(TakeSqliteFile(company));
  taken->RunScript("UPDATE SEC_USERLIST SET GROUPID = 1; COMMIT; BEGIN EXCLUSIVE");
  std::thread replace([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    fs::rename(copy, company);
    taken.reset();
  });
  Connection program;
  program.Open("Provider=SQLite;Data Source=" + company.string());
  replace.join();
  EXPECT_EQ(program.FirstValue("SELECT GROUPID FROM SEC_USERLIST")->NumberOr0(), 55);
}

// What a killed program has left goes with the next one that tries.
TEST_F(BackupTest, WhatCannotBeCopiedLeavesNothing) {
  std::ofstream(folder / "letter") << std::string(9000, 'x');
  fs::copy_file(company, folder / "torn");
  std::fstream(folder / "torn", std::ios::in | std::ios::out).seekp(16 * 4096) << std::string(8192, 'x');
  std::ofstream(folder / "x.1.ktl-making") << "at work";
  const FileDescriptor atWork(::open((folder / "x.1.ktl-making").c_str(), O_RDONLY));
  ASSERT_EQ(::flock(atWork.get(), LOCK_EX), 0);
  const auto names = folder.Names();
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"none", "b", "none does not exist."},
      {"letter", "b", "letter is not a company file."},
      {"klgen.MDB", "b", "has schema version 0; this program works with version 1."},
      {"torn", "b", "torn cannot be copied: it is damaged"},
      {"a.kldb", "a.kldb", "a.kldb: is the file to be copied"},
  };
  for (const auto& [from, to, told] : cases) {
    for (const char* ending : {"", "-wal"}) std::ofstream(folder / (std::string("y.1.ktl-making") + ending));
    const CopyOptions options{folder / from, folder / to, true};
    const std::string error = ErrorOf([&] { BackUpCompany(options); });
    EXPECT_NE(error.find(told), error.npos) << error;
    EXPECT_TRUE(folder.Names() == names || options.to == options.from) << from;
  }
}

}  // namespace
}  // namespace ktl
