#include "database/recordset.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "failure.h"
#include "support/company_fixture.h"

namespace ktl::test {
namespace {

TEST(Recordset, AddsChangesAndDeletesRows) {
  TestCompany company;
  company.Employee(17).Named("Asha Rao").Joined("01/Apr/2010");
  Recordset rows(company.Cn(), "Select * From INS_ADVLOAN Where EMPID = 17 And SERIALNO = 3 And SITYPE = 2",
                 OpenMode::Update);
  EXPECT_TRUE(rows.Eof() && rows.Bof());
  rows.AddNew();
  const std::pair<const char*, Value> fields[] = {
      {"EMPID", 17},          {"serialno", 3},           {"SITYPE", 2},
      {"SINAME", "Car Loan"}, {"SIDATE", "05/Jun/2024"}, {"ACTAMT", "1,20,000.50"}};
  for (const auto& [field, value] : fields) rows.Set(field, value);
  rows.Update();
  EXPECT_EQ(company.Rows("SELECT SINAME, SIDATE, ACTAMT, INTAMT FROM INS_ADVLOAN"),
            "Car Loan|05/06/2024|120000.5|NULL");
  rows.Set("SERIALNO", 4);
  rows.Update();
  EXPECT_EQ(company.Rows("SELECT SERIALNO FROM INS_ADVLOAN"), "4");
  EXPECT_EQ(company.Execute("DELETE FROM INS_ADVLOAN WHERE EMPID = 17"), 1);
}

TEST(Recordset, WalksItsRowsWhileTheTableIsWritten) {
  TestCompany company;
  for (int month = 24121; month <= 24124; ++month) company.Emi(17, 2, 3, month - 24120, month, 1000);
  Recordset rows(company.Cn(), "Select * From INS_EMIDETAIL Where MONTHYEAR > 24121 Order By MONTHYEAR",
                 OpenMode::Update);
  EXPECT_EQ(rows.RecordCount(), 3u);
  for (; !rows.Eof(); rows.MoveNext()) {
    company.Execute("DELETE FROM INS_EMIDETAIL WHERE MONTHYEAR = 24121");
    rows.Set("MDFYAMT", rows["EmiAmt"].ToDouble() + rows["COUNTER"].ToDouble());
    rows.Update();
  }
  EXPECT_EQ(company.Rows("SELECT MONTHYEAR, EMIAMT, MDFYAMT FROM INS_EMIDETAIL ORDER BY MONTHYEAR"),
            "24122|1000|1002\n24123|1000|1003\n24124|1000|1004");
  rows.MoveFirst();
  EXPECT_EQ(rows["MDFYAMT"], Value(1002.0));
  company.Execute("DELETE FROM INS_EMIDETAIL");
  rows.Set("MDFYAMT", 1);
  EXPECT_THROW(rows.Update(), DatabaseError);
}

TEST(Recordset, OpenedForAddingReadsNothing) {
  TestCompany company;
  company.Emi(17, 2, 3, 1, 24121, 1000);
  Recordset rows(company.Cn(), "Select * From INS_EMIDETAIL", OpenMode::AddOnly);
  EXPECT_EQ(rows.RecordCount(), 0u);
  for (int counter = 2; counter <= 3; ++counter) {
    rows.AddNew();
    for (const char* key : {"EMPID", "SITYPE", "SERIALNO"}) rows.Set(key, 17);
    rows.Set("MONTHYEAR", 24120 + counter);
    rows.Set("COUNTER", counter);
    rows.Update();
  }
  EXPECT_EQ(company.Rows("SELECT COUNT(*), SUM(EMIAMT) FROM INS_EMIDETAIL"), "3|1000");
}

TEST(Recordset, FindsFieldsAndRowsWithoutRegardToCase) {
  TestCompany company;
  company.Employee(17).Named("Asha Rao");
  company.Employee(18).Named("Bilal Khan");
  Recordset rows(
      company.Cn(),
      "SELECT E.*, F.EMPNAME FROM MAS_EMPLOYEE E, MAS_EMPLOYEE F WHERE F.EMPID = 18 ORDER BY E.EMPID");
  EXPECT_EQ(rows["empname"], Value("Asha Rao"));
  EXPECT_TRUE(rows.HasField("Doj") && rows["doj"].IsDate());
  EXPECT_TRUE(rows.Find("EMPNAME", "bilal khan"));
  EXPECT_EQ(rows["EMPID"], Value(18));
  EXPECT_FALSE(rows.Find("EMPID", "17"));
  EXPECT_TRUE(rows.Eof());
  EXPECT_EQ(FailureOf([&] { rows["EMPID"].IsNull(); }).number(), kNoCurrentRowError);
  EXPECT_EQ(FailureOf([&] { rows["NOTHING"].IsNull(); }).number(), kNoSuchFieldError);
  EXPECT_THROW(rows.Set("EMPID", 1), DatabaseError);
}

TEST(Recordset, MisuseIsAnErrorAndWritesNothing) {
  TestCompany company;
  company.Loan(17, 3, "Car Loan", 12000);
  const char* const all = "SELECT * FROM INS_ADVLOAN";
  const auto numberOf = [](auto deed) { return FailureOf(deed).number(); };

  Recordset closed;
  EXPECT_NE(numberOf([&] { closed.AddNew(); }), 0);
  Recordset readOnly(company.Cn(), all);
  EXPECT_NE(numberOf([&] { readOnly.AddNew(); }), 0);
  EXPECT_NE(numberOf([&] { readOnly.Set("REMARKS", "x"); }), 0);

  Recordset rows(company.Cn(), all, OpenMode::Update);
  EXPECT_EQ(numberOf([&] { rows.Set("NOTHING", 1); }), kNoSuchFieldError);
  rows.MoveNext();
  EXPECT_EQ(numberOf([&] { rows.Set("REMARKS", "x"); }), kNoCurrentRowError);
  rows.AddNew();
  rows.Set("EMPID", 17);
  EXPECT_EQ(numberOf([&] { rows.Update(); }), kIntegrityError);  // no serial number

  Recordset mine(company.Cn(), all, OpenMode::Update), gone(company.Cn(), all, OpenMode::Update);
  mine.Set("REMARKS", "mine");
  mine.Update();
  EXPECT_EQ(company.Rows("SELECT REMARKS FROM INS_ADVLOAN"), "mine");
  company.Execute("DELETE FROM INS_ADVLOAN");
  gone.Set("REMARKS", "late");
  EXPECT_EQ(numberOf([&] { gone.Update(); }), kRowGoneError);
  EXPECT_EQ(company.Rows("SELECT COUNT(*) FROM INS_ADVLOAN"), "0");
  mine.Close();
  EXPECT_FALSE(mine.IsOpen());
  EXPECT_TRUE(mine.Eof() && mine.Bof());
}

TEST(Recordset, ValuesMustFitTheirFields) {
  TestCompany company;
  company.Loan(17, 3, "Car Loan", 12000);
  const struct {
    const char* field;
    Value value;
    const char* stored;  // nothing when the value is refused
  } table[] = {
      {"SIDATE", "5/6/2024", "05/06/2024"},
      {"SIDATE", "2024-06-05", "05/06/2024"},
      {"SIDATE", *Date::FromYmd(2024, 6, 5), "05/06/2024"},
      {"SIDATE", Null{}, "NULL"},
      {"SIDATE", "31/Feb/2024", nullptr},
      {"SIDATE", "", nullptr},
      {"SIDATE", 5, nullptr},
      {"ACTAMT", "1,250.75", "1250.75"},
      {"ACTAMT", 3, "3"},
      {"ACTAMT", "12ab", nullptr},
      {"ACTAMT", "", nullptr},
      {"ACTAMT", std::nan(""), nullptr},
      {"ACTAMT", std::numeric_limits<double>::infinity(), nullptr},
      {"ACTAMT", 1e308, "1E+308"},
      {"SERIALNO", 2.5, "2"},
      {"SERIALNO", true, "1"},
      {"SERIALNO", 1e300, nullptr},
      {"REMARKS", 17.5, "17.5"},
      {"REMARKS", "O'Neill; --", "O'Neill; --"},
      {"SINAME", Null{}, nullptr},
  };
  for (const auto& fit : table) {
    Recordset rows(company.Cn(), "SELECT * FROM INS_ADVLOAN", OpenMode::Update);
    rows.Set(fit.field, fit.value);
    const std::string told = FailureOf([&] { rows.Update(); }).description();
    ASSERT_EQ(told == "done", fit.stored != nullptr) << fit.field << ": " << told;
    if (fit.stored) {
      EXPECT_EQ(company.Rows(std::string("SELECT ") + fit.field + " FROM INS_ADVLOAN"), fit.stored);
    }
  }
  EXPECT_THROW(Recordset(company.Cn(), "SELECT EMPID FROM INS_ADVLOAN", OpenMode::Update), DatabaseError);
}

}  // namespace
}  // namespace ktl::test
