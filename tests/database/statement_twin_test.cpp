#include "database/statement_twin.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "instructions/month_list.h"
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

TEST(StatementTwin, MonthsAreSteppedThroughInPlaceOfAllInstalments) {
  std::mt19937 random(7);
  for (const int spread : {1, 5, 30, 2000}) {
    TestCompany company;
    const auto same = [&company] {
      const ResultSet twin = company.Cn().Query(kMonthList), said = company.Cn().Query(kMonthList.said);
      return twin.columns == said.columns && twin.rows == said.rows;
    };
    if (spread == 1) company.Execute("DROP VIEW KTL_EMIMONTHS");  // an earlier release has made the company
    EXPECT_TRUE(same());
    for (int row = 0; row < 40; ++row)
      company.Emi(17, 1 + row % 7, 1, row, 24100 + static_cast<int>(random() % unsigned(spread)), 100);
    EXPECT_TRUE(same());
    EXPECT_EQ(company.One("SELECT COUNT(*) FROM SYS.VIEWS WHERE NAME = 'KTL_EMIMONTHS'"), Value(1));
  }
}

}  // namespace
}  // namespace ktl::test
