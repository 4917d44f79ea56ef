#include <fmt/format.h>

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
  const auto made = CreateCompany(options);
  options.server = server_.connectionString;
  EXPECT_TRUE(CreateOnServer(options) == made);
  EXPECT_EQ(Said(server_, "SELECT MONTHNAME FROM QRYMONTH WHERE MONTHYEAR = 24312"), "Dec/2025");
  CopyCompany({server_, File("back.kldb"), false});
  EXPECT_TRUE(SumsOf(File("back.kldb")) == SumsOf(File("made.kldb")));

  const CopiedCompany done = CopyCompany({Small("small.kldb"), server_, true});
  EXPECT_EQ(done.tables, 76U);
  EXPECT_TRUE(done.leftOut.empty());
  CopyCompany({server_, File("again.kldb"), false});
  EXPECT_TRUE(SumsOf(File("again.kldb")) == SumsOf(File("small.kldb")));
  EXPECT_EQ(LeftBehind(), "0");
}

TEST_F(ServerCopy, WhatIsInTheWayStays) {
  CopyCompany({Small("first.kldb"), server_, false});
  EXPECT_NE(ErrorOf([&] {
              CopyCompany({Small("next.kldb"), server_, false});
            }).find("holds a company already, --force replaces it"),
            std::string::npos);
  // Longer than a name can be on a server; it comes behind tables that are copied by then.
  const auto spoiled = Small(
      "spoiled.kldb", "DELETE FROM MAS_EMPLOYEE; INSERT INTO SEC_CLASSEMP VALUES (printf('%300c', 'x'), 1)");
  EXPECT_NE(ErrorOf([&] { CopyCompany({spoiled, server_, true}); }), "done");
  EXPECT_EQ(Said(server_, "SELECT COUNT(*) FROM MAS_EMPLOYEE"), "2");
  EXPECT_EQ(LeftBehind(), "0");
  database_->Run("DROP TABLE INS_HLOAN");
  EXPECT_NE(ErrorOf([&] {
              CopyCompany({server_, File("back.kldb"), false});
            }).find("it has no table INS_HLOAN"),
            std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "back.kldb"));
}

TEST_F(ServerCopy, WhatAKilledCopyLeftIsTakenAway) {
  std::string swapped = "CREATE TABLE KTL_MAKING_AGAIN (ID INT)";
  for (const auto& table : TableCatalogue())
    swapped += fmt::format("; RENAME TABLE {0} TO KTL_OLD_{0}", table.name);
  swapped += "; CREATE TABLE MAS_EMPLOYEE (EMPID INT)";
  const struct {
    std::string left;
    bool company;  // one is there already
  } cases[] = {
      {"CREATE TABLE KTL_MAKING_FIRST (ID INT); CREATE TABLE KTL_NEW_MAS_EMPLOYEE (EMPID INT)", false},
      {"CREATE TABLE KTL_MAKING_FIRST (ID INT); CREATE TABLE MAS_EMPLOYEE (EMPID INT)", false},
      {"CREATE TABLE KTL_MAKING_AGAIN (ID INT); CREATE TABLE KTL_NEW_MAS_EMPLOYEE (EMPID INT)", true},
      {swapped, true},
      {"CREATE TABLE KTL_OLD_MAS_EMPLOYEE (EMPID INT)", true},
  };
  const CompanyAddress source = Small("source.kldb");
  for (const auto& [left, company] : cases) {
    database_.emplace();
    server_ = AddressOf(database_->ConnectionString());
    if (company) CopyCompany({source, server_, false});
    for (const auto& each : Split(left, "; ")) database_->Run(each);
    std::string told;
    told += ErrorOf([&] {
      CopyCompany({source, server_, false, {{}, [&](const std::string& what) { told = what; }}});
    });
    EXPECT_EQ(told.ends_with("done"), !company) << left;
    EXPECT_EQ(told.find("has been cleaned away") != told.npos, left.find("MAKING") != left.npos) << left;
    EXPECT_EQ(Said(server_, "SELECT COUNT(*) FROM MAS_EMPLOYEE"), "2") << left;
    EXPECT_EQ(LeftBehind(), "0") << left;
    Connection cn;
    cn.Open(server_.connectionString);
    cn.Execute("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 1 WHERE MONTHYEAR = 24312");
    EXPECT_EQ(Said(server_, "SELECT COUNT(*) FROM SEC_MONTHLOCKHISTORY"), "1") << left;
  }
}

}  // namespace
}  // namespace ktl
