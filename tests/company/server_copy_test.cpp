#include <fmt/format.h>
#include <sys/resource.h>

#include <csignal>

#include "company/company_copy.h"
#include "company/company_rows.h"
#include "company/row_writer.h"
#include "database/connection.h"
#include "database/drivers/sqlite_file.h"
#include "runtime/text.h"
#include "sample_company.h"
#include "support/private_server.h"

namespace ktl {
namespace {

class ServerCopy : public testing::Test {
 protected:
  void SetUp() override {
    KTL_NEEDS_SERVER();
    database_.emplace();
    server_ = AddressOf(database_->ConnectionString());
  }

  CompanyAddress File(const char* name) const { return AddressOf((folder_ / name).string()); }
  // A company of a few rows, with what is hard to carry.
  CompanyAddress Small(const char* name, const std::string& more = "") const {
    CompanyOptions options = Options(folder_ / name);
    options.empty = true;
    CreateCompany(options);
    OpenSqliteFile(options.file, FileKind::Company, 1)
        .RunScript(
            "INSERT INTO MAS_EMPLOYEE (EMPID, EMPNAME, DOJ) VALUES (17, 'Zoë O''Neil \\  ', "
            "'2010-04-26'), (18, '', NULL);"
            "INSERT INTO INS_ADVLOAN (EMPID, SERIALNO, SITYPE, SINAME, ACTAMT, INTAMT, REMARKS) VALUES "
            "(17, 1, 2, 'Car', 0.1, 1234567890.565, 'two\nlines');"
            "INSERT INTO SEC_AUDITTRAIL (AUDITID, LOGDATE, MENUNO) VALUES (4, '2026-09-15 00:00:00', "
            "19), (9, '2026-09-15 10:30:05', 19);" +
            more);
    return AddressOf(options.file.string());
  }
  std::string Said(const CompanyAddress& company, const std::string& sql) const {
    Connection cn;
    cn.Open(company.connectionString);
    const auto value = cn.FirstValue(sql);
    return value ? value->TextOrEmpty() : "no row";
  }
  // The small company, with nothing beside it, whose month locks are noted.
  void ExpectWhole(const std::string& when) const {
    EXPECT_EQ(Said(server_, "SELECT COUNT(*) FROM MAS_EMPLOYEE"), "2") << when;
    EXPECT_EQ(LeftBehind(), "0") << when;
    Connection cn;
    cn.Open(server_.connectionString);
    cn.Execute("DELETE FROM SEC_MONTHLOCKHISTORY");
    cn.Execute("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 1 - LOCKEDYN WHERE MONTHYEAR = 24312");
    EXPECT_EQ(Said(server_, "SELECT COUNT(*) FROM SEC_MONTHLOCKHISTORY"), "1") << when;
  }
  std::string LeftBehind() const {
    return Said(server_, "SELECT COUNT(*) FROM SYS.TABLES WHERE NAME LIKE 'KTL%'");
  }

  Folder folder_;
  std::optional<test::ServerDatabase> database_;
  CompanyAddress server_;
};

// Servers have an order of their own among names that differ in punctuation only.
std::vector<RowSum> SumsOf(const CompanyAddress& company) {
  const auto source = OpenSource(company);
  std::vector<RowSum> sums;
  for (const auto& table : TableCatalogue())
    source->Read(table, [&sum = sums.emplace_back()](const Row& row) { sum.Add(row); });
  return sums;
}

TEST_F(ServerCopy, ACompanyComesBackAsItWasSent) {
  CompanyOptions options = Options(folder_ / "made.kldb");
  options.empty = true;
  const auto made = CreateCompany(options);
  options.server = server_.connectionString;
  database_->Run("ALTER DATABASE CHARACTER SET latin1 COLLATE latin1_swedish_ci");
  EXPECT_TRUE(CreateOnServer(options) == made);
  EXPECT_EQ(Said(server_, "SELECT MONTHNAME FROM QRYMONTH WHERE MONTHYEAR = 24312"), "Dec/2025");
  options.server = (folder_ / "no.kldb").string();
  EXPECT_TRUE(ErrorOf([&] { CreateOnServer(options); }).starts_with("--server wants a connection string"));

  const CopiedCompany done = CopyCompany({Small("small.kldb"), server_, true});
  EXPECT_EQ(done.tables, 76U);
  EXPECT_TRUE(done.leftOut.empty());
  {
    Connection cn;
    cn.Open(server_.connectionString);
    cn.Execute("UpdateAuditTrail 'ADMIN', 1, 18, 'Changed', 'अग्रिम', '', ''");
    EXPECT_EQ(cn.Execute("DELETE FROM SEC_AUDITTRAIL WHERE DETAILTEXT = 'अग्रिम'"), 1);
  }
  CopyCompany({server_, File("again.kldb"), false});
  EXPECT_TRUE(SumsOf(File("again.kldb")) == SumsOf(File("small.kldb")));
  EXPECT_EQ(LeftBehind(), "0");
}

TEST(FileCopy, WhatFailsIsToldByItsFileAndLeavesNothing) {
  const Folder folder;
  CompanyOptions options = Options(folder / "a.kldb");
  options.empty = true;
  CreateCompany(options);
  std::filesystem::create_symlink("a.kldb", folder / "link.kldb");
  const auto names = folder.Names();
  const auto copied = [&](const char* to) {
    return ErrorOf([&] {
      CopyCompany({AddressOf(options.file.string()), AddressOf((folder / to).string()), true});
    });
  };
  EXPECT_EQ(copied("link.kldb"), (folder / "link.kldb").string() + ": is the company to be copied");
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit full{65536, before.rlim_max};  // as on a full disk
  std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &full);
  const std::string told = copied("b.kldb");
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_TRUE(told.starts_with((folder / "b.kldb").string() + ": ")) << told;
  EXPECT_EQ(folder.Names(), names);
}

TEST_F(ServerCopy, WhatIsInTheWayStays) {
  const CompanyAddress small = Small("small.kldb");
  // Longer than a name can be on a server; it comes behind tables that are copied by then.
  const CompanyAddress spoiled = Small(
      "spoiled.kldb", "DELETE FROM MAS_EMPLOYEE; INSERT INTO SEC_CLASSEMP VALUES (printf('%300c', 'x'), 1)");
  CopyCompany({small, server_, false});
  // Whoever may make tables but no functions fails when the tables are in place already.
  const std::string maker = "m" + database_->Name();
  database_->Run(
      {"CREATE USER " + maker, "GRANT SELECT, INSERT, CREATE, DROP, ALTER, INDEX, CREATE VIEW, TRIGGER ON " +
                                   database_->Name() + ".* TO " + maker});
  const CompanyAddress asMaker =
      AddressOf(ReplaceAll(server_.connectionString, "User ID=root", "User ID=" + maker));
  const struct {
    const char *before, *after;  // what others have there
    CompanyAddress from, to;
    bool replace;
    const char* told;
  } cases[] = {
      {"SELECT 1", "SELECT 1", small, server_, false, "holds a company already, --force replaces it."},
      {"SELECT 1", "SELECT 1", spoiled, server_, true, "Data too long for column 'USERNAME'"},
      {"SELECT 1", "SELECT 1", Small("other.kldb", "DELETE FROM MAS_EMPLOYEE"), asMaker, true,
       "The user of the database may not do this: "},
      {"CREATE TABLE X (A INT REFERENCES MAS_EMPLOYEE (EMPID))", "DROP TABLE X", small, server_, true,
       "in the way of a company there: foreign key X_ibfk_1 of X. Drop that first."},
      {"CREATE TRIGGER X BEFORE INSERT ON MAS_EMPLOYEE FOR EACH ROW SET @x = 1", "DROP TRIGGER X", small,
       server_, true, "in the way of a company there: trigger X of MAS_EMPLOYEE. Drop that first."},
  };
  for (const auto& c : cases) {
    database_->Run(c.before);
    const std::string told = ErrorOf([&] { CopyCompany({c.from, c.to, c.replace}); });
    database_->Run(c.after);
    EXPECT_NE(told.find(c.told), told.npos) << told;
    ExpectWhole(c.told);
  }
  database_->Run("DROP USER " + maker);
  const auto back = [&] { return ErrorOf([&] { CopyCompany({server_, File("back.kldb"), false}); }); };
  database_->Run("DROP TABLE INS_HLOAN");
  EXPECT_NE(back().find("it has no table INS_HLOAN"), std::string::npos);
  database_->Run("CREATE OR REPLACE VIEW KTL_SCHEMA AS SELECT 2 AS VERSION");
  EXPECT_NE(back().find("has schema version 2; this program works with version 1."), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "back.kldb"));
}

TEST_F(ServerCopy, WhatAKilledCopyLeftIsTakenAwayOrFinished) {
  const struct {
    const char *left, *told;
  } cases[] = {
      {"CREATE TABLE KTL_MAKING_FIRST (ID INT); CREATE TABLE KTL_NEW_MAS_EMPLOYEE (EMPID INT); "
       "CREATE TABLE MAS_EMPLOYEE (EMPID INT)",
       "has been cleaned away."},
      {"CREATE TABLE KTL_MAKING_AGAIN (ID INT); CREATE TABLE KTL_NEW_MAS_EMPLOYEE (EMPID INT)",
       "has been cleaned away."},
      {"CREATE TABLE KTL_OLD_MAS_EMPLOYEE (EMPID INT)", ""},
      // People may have worked in it since.
      {"CREATE TABLE KTL_MAKING_FIRST (ID INT)", "at its end has been finished."},
      {"CREATE TABLE KTL_MAKING_AGAIN (ID INT); CREATE TABLE KTL_OLD_MAS_EMPLOYEE (EMPID INT); "
       "DROP TRIGGER KTL_MONTHLOCK",
       "at its end has been finished."},
  };
  const CompanyAddress source = Small("source.kldb");
  bool company = false;
  for (const auto& c : cases) {
    for (const auto& each : Split(c.left, "; ")) database_->Run(each);
    std::string told;
    told += ErrorOf([&] {
      CopyCompany({source, server_, false, {{}, [&](const std::string& what) { told = what; }}});
    });
    EXPECT_EQ(told.find("holds a company already") != told.npos, company) << c.left;
    EXPECT_NE(told.find(c.told), told.npos) << told;
    EXPECT_EQ(told.find("cut off") == told.npos, *c.told == 0) << told;
    ExpectWhole(c.left);
    company = true;
  }
}

}  // namespace
}  // namespace ktl
