#include "instructions/total_interest.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <random>

#include "database/drivers/sqlite_database.h"
#include "database/drivers/sqlite_functions.h"
#include "runtime/text.h"
#include "support/company_fixture.h"

namespace ktl::test {
namespace {

// Random changes of everything that the refresh reads, as a person, a script or another tool would make them.
class Changes {
 public:
  explicit Changes(unsigned seed) : random_(seed) {}

  std::string Next() {
    // Rows are made more often than they go.
    const int kind = Upto(40);
    switch (kind < 12 ? kind : kind < 15 ? 10 : kind < 20 ? 11 : kind < 27 ? 12 : 13) {
      case 0:
        return fmt::format("DELETE FROM INS_EMIDETAIL WHERE {} AND COUNTER = {}", Key(), Upto(6));
      case 1:
        return fmt::format("UPDATE INS_EMIDETAIL SET INTAMT = {} WHERE {} AND COUNTER = {}", Amount(), Key(),
                           Upto(6));
      case 2:
        return fmt::format("UPDATE INS_EMIDETAIL SET SERIALNO = {}, COUNTER = {} WHERE {} AND COUNTER = {}",
                           Upto(3), counter_++, Key(), Upto(6));
      case 3:
        return fmt::format("UPDATE INS_EMIDETAIL SET EMIAMT = 5, REMARKS = 'x' WHERE {}", Key());
      case 4:
        return fmt::format("DELETE FROM INS_ADVLOAN WHERE {}", Key());
      case 5:
        return fmt::format("UPDATE INS_ADVLOAN SET INTAMT = {} WHERE {}", Amount(), Key());
      case 6:
        return fmt::format("UPDATE INS_ADVLOAN SET SINAME = '{}' WHERE {}", Name(), Key());
      case 7:
        return fmt::format(
            "UPDATE INS_ADVLOAN SET SERIALNO = SERIALNO + 1 WHERE {} AND NOT EXISTS (SELECT * "
            "FROM INS_ADVLOAN A WHERE A.EMPID = INS_ADVLOAN.EMPID AND A.SITYPE = "
            "INS_ADVLOAN.SITYPE AND A.SERIALNO = INS_ADVLOAN.SERIALNO + 1)",
            Key());
      case 8:
        return fmt::format("UPDATE INS_MASTER SET REDUCINGBALYN = {} WHERE SINAME = '{}'", Flag(), Name());
      case 9:
        return fmt::format("DELETE FROM INS_MASTER WHERE SINAME = '{}'", Name());
      case 10:
        return fmt::format("UPDATE INS_MASTER SET SINAME = '{}' WHERE SINAME = '{}'", Name(), Name());
      case 11:
        return fmt::format("INSERT INTO INS_MASTER (SITYPE, SINAME, REDUCINGBALYN) VALUES ({}, '{}', {})",
                           1 + Upto(2), Name(), Flag());
      case 12:
        return fmt::format(
            "INSERT INTO INS_ADVLOAN (EMPID, SITYPE, SERIALNO, SINAME, INTAMT) VALUES (17, {}, {}, '{}', {})",
            1 + Upto(2), Upto(3), Name(), Amount());
      default:
        return fmt::format(
            "INSERT INTO INS_EMIDETAIL (EMPID, SITYPE, SERIALNO, COUNTER, MONTHYEAR, INTAMT) "
            "VALUES ({}, {}, {}, {}, {}, {})",
            17 + Upto(2), 1 + Upto(2), Upto(4), Upto(4), 24121 + Upto(9), Amount());
    }
  }

  int Upto(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }

 private:
  std::string Key() {
    return fmt::format("EMPID = 17 AND SITYPE = {} AND SERIALNO = {}", 1 + Upto(2), Upto(3));
  }
  // Quarters: their sums are the same in any order.
  std::string Amount() { return Upto(5) == 0 ? "NULL" : fmt::format("{}.{:02}", Upto(90), Upto(4) * 25); }
  int Flag() { return Upto(4) == 0 ? 0 : 1; }
  // Letter case and trailing blanks make no other name.
  const char* Name() {
    constexpr const char* kNames[] = {"Car Loan", "CAR LOAN ", "Bike Loan", "bike loan", "House Loan"};
    return kNames[Upto(5)];
  }

  std::mt19937 random_;
  int counter_ = 100;
};

// To the last bit.
std::vector<Value> Totals(TestCompany& company) {
  std::vector<Value> totals;
  Recordset rows(company.Cn(), "SELECT * FROM INS_ADVLOAN ORDER BY SITYPE, SERIALNO");
  for (; !rows.Eof(); rows.MoveNext())
    for (const char* column : {"SITYPE", "SERIALNO", "SINAME", "INTAMT"}) totals.push_back(rows[column]);
  return totals;
}

TEST(TotalInterest, TheTwinLeavesWhatTheTextLeaves) {
  KTL_NEEDS_FILE();
  int refreshed = 0;
  for (unsigned seed = 1; seed <= 12; ++seed) {
    TestCompany said, twin;
    Changes changes(seed);
    for (int refresh = 0; refresh < 60; ++refresh) {
      std::string history;
      for (int change = changes.Upto(10); change >= 0; --change) {
        const std::string sql = changes.Next();
        history += sql + '\n';
        for (TestCompany* company : {&said, &twin}) {
          try {
            company->Execute(sql);
          } catch (const DatabaseError&) {
            // A key that is there already, in both.
          }
        }
      }
      const auto rows = said.Execute(kTotalInterest.said);
      EXPECT_EQ(twin.Cn().Execute(kTotalInterest), rows);
      refreshed += static_cast<int>(rows);
      ASSERT_TRUE(Totals(twin) == Totals(said)) << "seed " << seed << "\n" << history;
      // Everything is in order now, so nothing needs to be listed any more.
      if (changes.Upto(2) == 0) twin.Execute("DELETE FROM KTL_INTERESTTOUCHED");
    }
  }
  EXPECT_GT(refreshed, 200);
}

// A reducing loan whose months bear 10, 20.25 and 30.5.
void Lend(TestCompany& company, int employee, double interest) {
  company.Loan(employee, 3, "Car Loan", 12000).With("INTAMT", interest);
  const double months[] = {10, 20.25, 30.5};
  for (int i = 0; i < 3; ++i) company.Emi(employee, 2, 3, i + 1, 24121 + i, 1000).With("INTAMT", months[i]);
}

TEST(TotalInterest, NothingIsWrittenWhileNothingHasParted) {
  KTL_NEEDS_FILE();
  TestCompany company;
  company.Name(2, "Car Loan").Reducing(9);
  company.Name(2, "House Loan");
  Lend(company, 17, 60.75);
  company.Loan(18, 1, "House Loan", 12000);
  company.Emi(18, 2, 1, 1, 24121, 1000);
  Connection other;
  other.SetCommandTimeout(0);
  other.Open(company.ConnectionString());
  Transaction writing(company.Cn());
  EXPECT_EQ(other.Execute(kTotalInterest), 0);
  EXPECT_THROW(other.Execute(kTotalInterest.said), DatabaseError);
}

TEST(TotalInterest, TheListIsEmptiedByWhatPutsTotalsInOrder) {
  KTL_NEEDS_FILE();
  TestCompany company;
  company.Name(2, "Car Loan").Reducing(9);
  const auto listed = [&] { return company.One("SELECT COUNT(*) FROM KTL_INTERESTTOUCHED"); };
  for (int employee = 1; employee <= 3; ++employee) Lend(company, employee, 0);
  EXPECT_EQ(listed(), Value(3));
  company.Execute("UPDATE INS_ADVLOAN SET INTAMT = 60.75 WHERE EMPID = 1");
  company.Execute("DELETE FROM INS_ADVLOAN WHERE EMPID = 2");
  EXPECT_EQ(listed(), Value(1));
  EXPECT_EQ(company.Cn().Execute(kTotalInterest), 1);
  EXPECT_EQ(listed(), Value(0));
  // Instructions of no reducing name stay until they are too many; those that are due never go unseen.
  company.Name(2, "House Loan");
  for (int employee = 10; employee <= 110; ++employee) {
    company.Loan(employee, 1, "House Loan", 100).With("INTAMT", 5.0);
    company.Emi(employee, 2, 1, 1, 24121, 100).With("INTAMT", 1.0);
  }
  Lend(company, 200, 0);
  EXPECT_EQ(listed(), Value(102));
  company.Cn().Execute(kTotalInterest);
  EXPECT_EQ(listed(), Value(0));
  EXPECT_EQ(company.Rows("SELECT INTAMT FROM INS_ADVLOAN WHERE EMPID IN (110, 200) ORDER BY EMPID"),
            "5\n60.75");
}

TEST(TotalInterest, TheTwinStartsFromTheListInALargeCompany) {
  KTL_NEEDS_FILE();
  TestCompany company;
  company.Name(2, "Car Loan").Reducing(9);
  Lend(company, 17, 0);
  SqliteDatabase(company.File().string(), SqliteDatabase::Mode::Existing)
      .RunScript(
          "ANALYZE; DELETE FROM sqlite_stat1; INSERT INTO sqlite_stat1 VALUES"
          " ('INS_ADVLOAN', 'IX_ADV_NAME', '117000 58500 10637'),"
          " ('INS_ADVLOAN', 'sqlite_autoindex_INS_ADVLOAN_1', '117000 12 6 1'),"
          " ('INS_EMIDETAIL', 'IX_EMI_KEYMONTH', '7000000 702 352 60 1 1'),"
          " ('INS_EMIDETAIL', 'IX_EMI_MONTH', '7000000 44872 18919 4'),"
          " ('INS_MASTER', 'sqlite_autoindex_INS_MASTER_1', '23 4 1');");
  SqliteDatabase planned(company.File().string(), SqliteDatabase::Mode::Existing);
  RegisterTextRules(planned);
  int statements = 0;
  for (const std::string& line : Split(company.Cn().Explain(kTotalInterest.embedded), "\n")) {
    const std::string sql = ReplaceAll(Trim(line), "else: ", "");
    SqliteDatabase::Lease plan(planned, "EXPLAIN QUERY PLAN " + sql);
    for (++statements; plan->Step();) {
      const std::string step = plan->Column(3).ToText();
      EXPECT_TRUE(!step.starts_with("SCAN") || step == "SCAN T" || step == "SCAN CONSTANT ROW" ||
                  step == "SCAN KTL_INTERESTTOUCHED")
          << sql << "\n"
          << step;
    }
  }
  EXPECT_EQ(statements, 4);
}

// As an earlier release made it.
void ForgetTheList(TestCompany& company) {
  SqliteDatabase file(company.File().string(), SqliteDatabase::Mode::Existing);
  for (const char* trigger : {"MONTHADDED", "MONTHGONE", "MONTHCHANGED", "TOTALADDED", "TOTALGONE",
                              "TOTALCHANGED", "NAMEADDED", "NAMECHANGED"})
    file.RunScript(fmt::format("DROP TRIGGER KTL_INTEREST_{}", trigger).c_str());
  file.RunScript("DROP VIEW KTL_INTERESTDUE; DROP TABLE KTL_INTERESTTOUCHED;");
}

TEST(TotalInterest, AnEarlierCompanyGetsItsListAtTheFirstRefresh) {
  KTL_NEEDS_FILE();
  TestCompany company;
  ForgetTheList(company);
  company.Name(2, "Car Loan").Reducing(9);
  Lend(company, 17, 0);
  Connection other;
  other.Open(company.ConnectionString());
  {
    // What is made inside a transaction could go again: the text itself answers.
    Transaction undone(company.Cn());
    EXPECT_EQ(company.Cn().Execute(kTotalInterest), 1);
  }
  const auto made = [&] {
    return company.One("SELECT COUNT(*) FROM SYS.VIEWS WHERE NAME = 'KTL_INTERESTDUE'");
  };
  EXPECT_EQ(made(), Value(0));
  EXPECT_EQ(company.Cn().Execute(kTotalInterest), 1);
  EXPECT_EQ(made(), Value(1));
  company.Execute("UPDATE INS_EMIDETAIL SET INTAMT = 1 WHERE COUNTER = 1");
  EXPECT_EQ(other.Execute(kTotalInterest), 1);
  EXPECT_EQ(company.One("SELECT INTAMT FROM INS_ADVLOAN"), Value(51.75));
}

}  // namespace
}  // namespace ktl::test
