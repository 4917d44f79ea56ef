#include "database/statement_twin.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "database/said.h"
#include "support/company_fixture.h"

namespace ktl::test {
namespace {

TEST(StatementTwin, IsAnsweredByTheOneAndLoggedAsTheOther) {
  const std::string file = testing::TempDir() + "ktl-twins.log";
  std::filesystem::remove(file);
  TestCompany company;
  company.Cn().SetStatementLog(file);
  const StatementTwin query{"SELECT 1", "SELECT 2"};
  const StatementTwin change{"UPDATE MAS_OPTSET SET ROUNDTYPE = 2", "UPDATE MAS_OPTSET SET ROUNDTYPE = 3"};
  EXPECT_EQ(Recordset(company.Cn(), query)[0], Value(2));
  EXPECT_EQ(company.Cn().Execute(change), 1);
  EXPECT_EQ(company.One("SELECT ROUNDTYPE FROM MAS_OPTSET"), Value(3));
  std::ifstream log(file);
  std::string first, second;
  std::getline(log, first) && std::getline(log, second);
  EXPECT_TRUE(first.ends_with("\t1\tSELECT 1")) << first;
  EXPECT_TRUE(second.ends_with("\t1\tUPDATE MAS_OPTSET SET ROUNDTYPE = 2")) << second;
  std::filesystem::remove(file);
}

TEST(StatementTwin, IsLeftAloneWhereWhatItNeedsCannotBeMade) {
  TestCompany company;
  const StatementTwin twin{"SELECT 1", "SELECT A FROM KTL_NOTES", "KTL_NOTES",
                           "CREATE TABLE KTL_NOTES (A INTEGER); INSERT INTO KTL_NOTES VALUES (2);"};
  const StatementTwin broken{"SELECT 1", "SELECT A FROM KTL_BROKEN", "KTL_BROKEN",
                             "CREATE TABLE KTL_BROKEN (A INTEGER); INSERT INTO NOWHERE VALUES (2);"};
  const auto answer = [&](const StatementTwin& said) { return Recordset(company.Cn(), said)[0]; };
  EXPECT_EQ(answer(broken), Value(1));
  EXPECT_EQ(company.One("SELECT COUNT(*) FROM SYS.TABLES WHERE NAME LIKE 'KTL_BROKEN'"), Value(0));
  {
    Transaction undone(company.Cn());
    EXPECT_EQ(answer(twin), Value(1));
  }
  EXPECT_EQ(answer(twin), Value(2));
  EXPECT_EQ(answer(twin), Value(2));
}

TEST(StatementTwin, MonthsAreListedByTheirNumbersBeforeTheyAreNamed) {
  std::string listed = SaidAs("monthview-2").sql;
  listed.replace(listed.find("Distinct "), 9, "");
  listed.replace(listed.find("INS_EMIDETAIL"), 13, "(SELECT DISTINCT MONTHYEAR FROM INS_EMIDETAIL) E");
  std::mt19937 random(7);
  for (int round = 0; round < 3; ++round) {
    TestCompany company;
    for (int row = 0; row < 40; ++row)
      company.Emi(17, 1 + row % 7, 1, row, 24100 + static_cast<int>(random() % 30), 100);
    const StatementTwin months{SaidAs("monthview-2").sql, listed};
    EXPECT_EQ(company.Cn().Query(months).columns, company.Cn().Query(months.said).columns);
    const auto rows = [&](std::string_view sql) { return company.Rows(sql); };
    EXPECT_EQ(rows(months.embedded), rows(months.said));
  }
}

}  // namespace
}  // namespace ktl::test
