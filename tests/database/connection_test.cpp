#include "database/connection.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "database/drivers/sqlite_file.h"
#include "failure.h"
#include "support/company_fixture.h"

namespace ktl::test {
namespace {

namespace fs = std::filesystem;

std::string OpenError(const std::string& connectionString) {
  Connection cn;
  cn.SetConnectionTimeout(0);
  const std::string told = FailureOf([&] { cn.Open(connectionString); }).description();
  EXPECT_EQ(cn.IsOpen(), told == "done");
  return told;
}

// A folder of files that are no companies.
class OddFiles : public testing::Test {
 protected:
  OddFiles() { fs::create_directories(folder_); }
  ~OddFiles() override { fs::remove_all(folder_); }

  std::string Path(const char* name) const { return (folder_ / name).string(); }
  static std::string ErrorOf(const std::string& file) {
    return OpenError("Provider=SQLite;Data Source=" + file);
  }

  fs::path folder_ = fs::path(testing::TempDir()) / ("ktl-odd-files-" + std::to_string(getpid()));
};

TEST_F(OddFiles, AreRefusedInOneClearLine) {
  const std::string missing = Path("missing.ktl");
  EXPECT_EQ(ErrorOf(missing), "The company file " + missing + " does not exist.");
  EXPECT_FALSE(fs::exists(missing));
  EXPECT_EQ(ErrorOf(folder_.string()), folder_.string() + " is a folder, not a company file.");
  for (const std::size_t bytes : {5000U, 0U}) {
    const std::string text = Path("notes.txt");
    std::ofstream(text) << std::string(bytes, 'x');
    EXPECT_EQ(ErrorOf(text), text + " is not a company file.") << bytes;
  }
  const std::string later = Path("later.ktl");
  CreateSqliteFile(later, {"CREATE TABLE MAS_EMPLOYEE (EMPID INTEGER); PRAGMA user_version = 2;"});
  EXPECT_EQ(ErrorOf(later),
            "The company file " + later + " has schema version 2; this program works with version 1.");
  EXPECT_THROW(CreateSqliteFile(later, {"SELECT 1"}), DatabaseError);
  EXPECT_EQ(ErrorOf(""), "The connection string names no company file.");
}

TEST_F(OddFiles, ALockedCompanyIsNotWaitedForLongerThanTheTimeOut) {
  TestCompany company;
  SqliteDatabase other(company.File().string(), SqliteDatabase::Mode::Existing);
  company.Cn().Close();
  other.RunScript("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE; CREATE TABLE MINE (X);");
  EXPECT_EQ(ErrorOf(company.File().string()),
            "The company file " + company.File().string() + " is locked by another program.");
}

TEST(Connection, AProviderMustBeKnown) {
  EXPECT_EQ(OpenError("Provider=Oracle;"), "The provider Oracle is unknown.");
  EXPECT_EQ(OpenError("Data Source=x"), "The connection string names no provider.");
  Connection closed;
  EXPECT_THROW(closed.Execute("SELECT 1"), DatabaseError);
}

TEST(Connection, ATransactionIsUndoneUnlessItIsCommitted) {
  TestCompany company;
  for (const bool commits : {false, true}) {
    {
      Transaction transaction(company.Cn());
      company.Employee(17);
      EXPECT_THROW(company.Cn().BeginTrans(), DatabaseError);
      if (commits) transaction.Commit();
    }
    EXPECT_EQ(company.Rows("SELECT COUNT(*) FROM MAS_EMPLOYEE"), commits ? "1" : "0");
  }
  EXPECT_THROW(company.Cn().CommitTrans(), DatabaseError);
}

TEST(Connection, TwoWorkstationsSeeEachOthersRowsAndQueueForWriting) {
  TestCompany company;
  Connection other;
  other.SetConnectionTimeout(0);
  other.SetCommandTimeout(0);
  other.Open(company.ConnectionString());
  company.Employee(17);
  EXPECT_TRUE(other.HasRows("SELECT * FROM MAS_EMPLOYEE"));
  Transaction transaction(company.Cn());
  company.Employee(18);
  EXPECT_EQ(other.FirstValue("SELECT COUNT(*) FROM MAS_EMPLOYEE"), Value(1));
  EXPECT_EQ(FailureOf([&] { other.Execute("DELETE FROM MAS_EMPLOYEE"); }).description(), kLockedText);
}

// The other writer is a connection of its own: to the file that is another program.
TEST(Connection, WhoWaitsForAnotherWriterIsAskedAndMayGiveUp) {
  TestCompany company;
  const struct {
    const char* name;
    bool wroteBefore;
    int asksUntilFree;  // the other writer is done then; 0 for never
    int asksUntilGivenUp;
    const char* expected;  // the employees that are there
  } cases[] = {{"goes on when the other is done", false, 3, 0, "18\n19"},
               {"gives up", false, 0, 3, "18"},
               {"knows that this event has written", true, 0, 3, "17\n18"}};
  for (const auto& c : cases) {
    company.Execute("DELETE FROM MAS_EMPLOYEE");
    std::optional<Transaction> writes;
    std::vector<bool> asked;
    Connection cn;
    cn.SetOnWait([&](const WriteWait& wait) {
      asked.push_back(wait.mayGiveUp);
      if (std::ssize(asked) == c.asksUntilFree) writes->Commit();
      return std::ssize(asked) != c.asksUntilGivenUp;
    });
    cn.Open(company.ConnectionString());
    if (c.wroteBefore) cn.Execute("INSERT INTO MAS_EMPLOYEE (EMPID) VALUES (17)");
    writes.emplace(company.Cn());
    company.Employee(18);
    const auto save = [&] { cn.Execute("INSERT INTO MAS_EMPLOYEE (EMPID) VALUES (19)"); };
    if (c.asksUntilGivenUp == 0) {
      save();
    } else {
      EXPECT_EQ(FailureOf(save).description(), kLockedText) << c.name;
      writes->Commit();
    }
    EXPECT_EQ(company.Rows("SELECT EMPID FROM MAS_EMPLOYEE ORDER BY EMPID"), c.expected) << c.name;
    EXPECT_EQ(asked, std::vector<bool>(3, !c.wroteBefore)) << c.name;
  }
}

TEST(Connection, EmployeeLocksFollowTheFeatureAndTheRange) {
  TestCompany company;
  company.Row("SEC_EMPLOCK").With("EMPID", 17).With("MONTHYEAR", 24125);
  company.Row("SEC_EMPLOCK").With("EMPID", 18).With("MONTHYEAR", 24125).With("LOCKYN", false);
  const std::pair<const char*, int> table[] = {
      {"17,24121,24125", 1},   {"17,24125,24125", 1},   {"17,24126,36000", 0}, {"17,24121,24124", 0},
      {"17,24121,DEFAULT", 1}, {"17,24126,DEFAULT", 0}, {"17,0,0", 0},         {"17,0,DEFAULT", 0},
      {"17,24121,0", 0},       {"18,24121,DEFAULT", 0},
  };
  for (const auto& [arguments, locked] : table)
    EXPECT_EQ(company.One(std::string("SELECT dbo.udf_getEmpLock (") + arguments + " )"), Value(locked))
        << arguments;
  company.Execute("UPDATE MAS_OPTSETFEATURE SET EMPLOCKYN = 0");
  EXPECT_EQ(company.One("SELECT dbo.udf_getEmpLock(17,24121,24125)"), Value(0));
}

TEST(Connection, ProceduresOfTheHostAnswer) {
  TestCompany company;
  company.Employee(17);
  company.Employee(18);
  company.Execute("dbo.ClassSecurity 1,24132,1");
  EXPECT_EQ(company.Rows("SELECT EMPID FROM [TMPPC1]"), "17\n18");
  company.Row("SEC_CLASSEMP").With("USERNAME", "ADMIN").With("EMPID", 18);
  company.Row("SEC_CLASSEMP").With("USERNAME", "RAVI").With("EMPID", 17);
  company.Execute("dbo.ClassSecurity 0,0,0");
  company.Execute("dbo.ClassSecurityCloud 1,24132,1,RAVI");
  EXPECT_EQ(company.Rows("SELECT EMPID FROM [TMPPC1]"), "18");
  EXPECT_EQ(company.Rows("SELECT EMPID FROM [TMPPC1RAVI]"), "17");
  company.Execute(
      "UpdateAuditTrail 'O''BRIEN', 19, 17, 'Loan Added', 'Loan Added::SI Name = Car Loan', '' , 'ws1'");
  EXPECT_EQ(company.Rows("SELECT * FROM SEC_AUDITTRAIL"),
            "1|15/01/2025 10:30:00|O'BRIEN|19|17|Loan Added|Loan Added::SI Name = Car Loan||ws1");
  EXPECT_THROW(company.Execute("UpdateAuditTrail 'A', 19"), DatabaseError);
  EXPECT_THROW(company.Execute("NoSuchProcedure 1"), DatabaseError);
}

TEST(Connection, MonthLocksLeaveAHistoryOfRealChanges) {
  TestCompany company;
  company.Months(24121, 24122);
  company.Execute("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 1,ATTLOCKYN = 1 WHERE MONTHYEAR = 24121");
  company.Execute("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 1,ATTLOCKYN = 1 WHERE MONTHYEAR = 24121");
  EXPECT_EQ(company.Rows("SELECT * FROM SEC_MONTHLOCKHISTORY"), "24121|1|PC1|15/01/2025 10:30:00|1");
}

TEST(Connection, FirstValueStepsOnceAndErrorsKeepTheirNumbers) {
  TestCompany company;
  EXPECT_EQ(company.Cn().FirstValue("SELECT EMPID FROM MAS_EMPLOYEE"), std::nullopt);
  EXPECT_TRUE(company.Cn().FirstValue("SELECT MAX(EMPID) FROM MAS_EMPLOYEE")->IsNull());
  company.Employee(17).Joined("01/Apr/2010");
  EXPECT_TRUE(company.One("SELECT MAX(DOJ) FROM MAS_EMPLOYEE").IsDate());
  const auto numberOf = [&](const char* sql) { return FailureOf([&] { company.Execute(sql); }).number(); };
  EXPECT_EQ(numberOf("SELECT * FROM NOWHERE"), kNoSuchTableError);
  EXPECT_EQ(numberOf("SELECT NOTHING FROM MAS_EMPLOYEE"), kStatementError);
  EXPECT_EQ(numberOf("INSERT INTO MAS_EMPLOYEE (EMPID) VALUES (17)"), kIntegrityError);
  EXPECT_EQ(numberOf("SELECT 1e308 * 10"), 0L);
  EXPECT_THROW(company.One("SELECT 1e308 * 10"), DatabaseError);
}

TEST(Connection, TheLogHoldsEveryStatementAsItWasSaid) {
  const std::string file = testing::TempDir() + "ktl-statements.log";
  fs::remove(file);
  {
    TestCompany company;
    company.Cn().SetStatementLog(file);
    company.Execute("SELECT PDID FROM MAS_PULLDOWNVALUES\nWHERE REFID = 16");
    EXPECT_THROW(company.Execute("DROP TABLE NOWHERE"), DatabaseError);
  }
  std::ostringstream rest;
  std::ifstream log(file);
  for (std::string line; std::getline(log, line);) rest << line.substr(line.find('\t')) << '\n';
  EXPECT_EQ(rest.str(),
            "\t7\tSELECT PDID FROM MAS_PULLDOWNVALUES WHERE REFID = 16\n\t-1\tDROP TABLE NOWHERE\n");
  fs::remove(file);
}

}  // namespace
}  // namespace ktl::test
