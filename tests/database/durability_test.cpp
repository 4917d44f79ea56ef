#include <gtest/gtest.h>
#include <sqlite3.h>

#include "database/drivers/sqlite_file.h"
#include "support/company_fixture.h"
#include "support/power_cut.h"
#include "support/temporary_folder.h"

namespace ktl::test {
namespace {

class Durability : public testing::Test {
 protected:
  TestCompany company;
  PowerCut machine{company.File()};
};

TEST_F(Durability, WhatWasCommittedIsThereOnceItWasMadeDurable) {
  company.Employee(17);
  company.Employee(18);
  EXPECT_EQ(machine.EmployeesLeft(), 0);
  company.Cn().MakeDurable();
  EXPECT_EQ(machine.EmployeesLeft(), 2);
  {
    Transaction open(company.Cn());
    company.Employee(19);
    company.Cn().MakeDurable();
    EXPECT_EQ(machine.EmployeesLeft(), 2);
    open.Commit();
  }
  company.Cn().MakeDurable();
  EXPECT_EQ(machine.EmployeesLeft(), 3);
}

TEST_F(Durability, OneFlushAnEventAndNoneForNothing) {
  company.Employee(17);
  company.Cn().MakeDurable();
  for (int employee = 20; employee < 60; ++employee) company.Employee(employee);
  const int before = PowerCut::Flushes();
  company.Cn().MakeDurable();
  company.Cn().MakeDurable();
  EXPECT_EQ(PowerCut::Flushes(), before + 1);
}

TEST_F(Durability, LeavingWhileOthersStayFlushesToo) {
  Connection leaving;
  leaving.Open(company.ConnectionString());
  leaving.Execute("INSERT INTO MAS_EMPLOYEE (EMPID) VALUES (17)");
  EXPECT_EQ(machine.EmployeesLeft(), 0);
  leaving.Close();
  EXPECT_EQ(machine.EmployeesLeft(), 1);
}

// Many commits of one event are carried over into the file together at its end; a short log waits.
TEST_F(Durability, ALogOfManyCommitsIsCarriedOverAtTheEndOfTheirEvent) {
  const auto commit = [this](int employee) {
    company.Execute("INSERT INTO SEC_AUDITTRAIL (EMPID, DETAILTEXT) VALUES (" + std::to_string(employee) +
                    ", '" + std::string(200'000, 'x') + "')");  // fifty pages
  };
  const auto size = [this] { return std::filesystem::file_size(company.File()); };
  const auto grown = [&](int commits) {
    const auto before = size();
    for (int each = 0; each < commits; ++each) commit(each);
    const auto atWork = size() - before;
    company.Cn().MakeDurable();
    return std::pair(atWork, size() - before - atWork);
  };
  EXPECT_EQ(grown(15).second, 0);
  const auto [atWork, atEnd] = grown(60);
  EXPECT_EQ(atWork, 0);
  EXPECT_GT(atEnd, 60 * 200'000);
  EXPECT_EQ(grown(15).second, 0);
  EXPECT_GT(grown(330).first, 300 * 200'000);  // sixteen thousand pages, though the event goes on
}

// A file system where programs cannot share the memory that a log needs.
TEST(DurabilityWithoutALog, EachCommitIsOnTheDiskByItself) {
  sqlite3_vfs* const usual = sqlite3_vfs_find(nullptr);
  sqlite3_vfs_register(sqlite3_vfs_find("unix-dotfile"), 1);
  TemporaryFolder folder;
  const std::string file = (folder.path() / "company.kldb").string();
  CreateSqliteFile(file, {"CREATE TABLE MAS_EMPLOYEE (EMPID INTEGER); PRAGMA user_version = 1;"});
  SqliteDatabase company = OpenSqliteFile(file, FileKind::Company, 1);
  sqlite3_vfs_register(usual, 1);
  EXPECT_EQ(company.Text("PRAGMA journal_mode"), "delete");
  EXPECT_EQ(company.Number("PRAGMA synchronous"), 3);  // EXTRA: the folder that held the journal too
  const int before = PowerCut::Flushes();
  company.Run("INSERT INTO MAS_EMPLOYEE VALUES (17)");
  EXPECT_GT(PowerCut::Flushes(), before + 2);
}

}  // namespace
}  // namespace ktl::test
