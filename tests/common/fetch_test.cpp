#include "common/fetch.h"

#include <gtest/gtest.h>

#include <tuple>

#include "common/amounts.h"
#include "common/month_year.h"
#include "support/company_fixture.h"
#include "support/scripted_desk.h"

namespace ktl {
namespace {

class FetchTest : public testing::Test {
 protected:
  test::TestCompany company;
  ScriptedDesk desk;
  DataAccess data{company.Cn(), desk};
};

TEST_F(FetchTest, TheDefaultStandsForNoRowAndForNull) {
  const Value date = *Date::FromYmd(2010, 4, 1);
  for (const Value& preset : {Value(7), Value("none"), Value(true), Value(1.5), date, Value()}) {
    EXPECT_EQ(data.FnVarGetDbValue("SELECT TYPEID FROM MAS_INSTITUTION WHERE INSTID = -1", preset), preset);
    EXPECT_EQ(data.FnVarGetDbValue("SELECT MAX(INSTID) FROM MAS_INSTITUTION WHERE INSTID = -1", preset),
              preset);
  }
  company.Institution(5, "Deccan Bank", 2);
  EXPECT_EQ(data.FnVarGetDbValue("SELECT INSTNAME, TYPEID FROM MAS_INSTITUTION", "none"),
            Value("Deccan Bank"));
  EXPECT_EQ(data.Text("SELECT INSTNAME FROM MAS_INSTITUTION"), "Deccan Bank");
  EXPECT_EQ(data.Text("SELECT MAX(INSTNAME) FROM MAS_INSTITUTION WHERE INSTID = -1", "none"), "none");
  EXPECT_EQ(data.Long("SELECT TYPEID FROM MAS_INSTITUTION"), 2);
  EXPECT_EQ(data.Long("SELECT TYPEID FROM MAS_INSTITUTION WHERE INSTID = -1", 7), 7);
  EXPECT_EQ(data.Number("SELECT TYPEID / 4.0 FROM MAS_INSTITUTION"), 0.5);
  EXPECT_TRUE(data.FnBlnRecExists("SELECT * FROM MAS_INSTITUTION WHERE INSTID = 5"));
  EXPECT_FALSE(data.FnBlnRecExists("SELECT * FROM MAS_INSTITUTION WHERE INSTID = 6"));
  EXPECT_TRUE(desk.Boxes().empty());
}

TEST_F(FetchTest, AFailureIsToldAndGivesNothingNotTheDefault) {
  data.SetTitle("Loans");
  EXPECT_TRUE(data.FnVarGetDbValue("SELECT NOWHERE FROM MAS_INSTITUTION", 7).IsEmpty());
  const std::string box = desk.TakeLines();
  EXPECT_TRUE(box.starts_with("Critical | Loans | ")) << box;
  EXPECT_TRUE(box.ends_with(" : " + std::to_string(kStatementError))) << box;
  EXPECT_EQ(data.Long("SELECT NOWHERE FROM MAS_INSTITUTION", 7), 0);
  EXPECT_EQ(desk.TakeLines(), box);
  EXPECT_TRUE(data.FnVarGetDbValue("SELECT NOWHERE FROM MAS_INSTITUTION", 7, true).IsEmpty());
  EXPECT_FALSE(data.ExecuteSql("DELETE FROM NOWHERE"));
  EXPECT_TRUE(data.ExecuteSql("DELETE FROM MAS_INSTITUTION"));
  EXPECT_TRUE(desk.Boxes().empty());
  EXPECT_THROW(data.FnBlnRecExists("SELECT * FROM NOWHERE"), DatabaseError);
}

TEST_F(FetchTest, NullAndZeroGiveWayToTheAlternative) {
  const std::tuple<Value, bool, bool> cases[] = {
      {Null{}, false, true}, {Null{}, true, true}, {0, false, false},     {0, true, true},
      {0.0, true, true},     {"0.00", true, true}, {"", true, false},     {"x", true, false},
      {0.001, true, false},  {-1, true, false},    {Date(), true, false},
  };
  for (const auto& [value, zeroToo, givesWay] : cases) {
    EXPECT_EQ(CNull(value, "other", zeroToo), givesWay ? Value("other") : value)
        << (value.IsNull() ? "null" : value.ToText()) << (zeroToo ? " with zero" : "");
  }
}

TEST_F(FetchTest, NumbersAndListsOfATable) {
  clsCtrlDep lookups(data);
  EXPECT_EQ(lookups.FnLngGetNextNumber("INSTID", "MAS_INSTITUTION"), 1);
  EXPECT_FALSE(lookups.FnBlnGetYesNo("TYPEID", "MAS_INSTITUTION"));
  company.Institution(5, "Deccan Bank", 2);
  company.Institution(9, "Kaveri Mutual", 3);
  EXPECT_EQ(lookups.FnLngGetNextNumber("INSTID", "MAS_INSTITUTION"), 10);
  EXPECT_EQ(lookups.FnLngGetNextNumber("INSTID", "MAS_INSTITUTION", "TYPEID = 2"), 6);
  EXPECT_TRUE(lookups.FnBlnGetYesNo("TYPEID", "MAS_INSTITUTION"));
  EXPECT_FALSE(lookups.FnBlnMatchedWithList("INSTID", "MAS_INSTITUTION", "O'7"));
  EXPECT_EQ(clsGenCmn::FnLngDeleteBox(desk), Answer::No);
  EXPECT_EQ(desk.TakeLines(), "Question | Confirm Deleting : | Delete This Record ?");
}

// March 2010 runs from 26 February; its end is not kept.
TEST_F(FetchTest, SalaryMonthsOfTheMidMonthCycle) {
  company.Execute("DELETE FROM MAS_MONTHYEAR");
  company.Row("MAS_MONTHYEAR").With("MONTHYEAR", 24123).With("CALCSTARTDATE", "26/Feb/2010");
  company.Row("MAS_MONTHSALDATE")
      .With("MONTHYEAR", 24123)
      .With("CALCSTARTDATE", "26/Feb/2010")
      .With("CALCENDDATE", "25/Mar/2010");
  const std::tuple<bool, const char*, long> months[] = {
      {true, "26/02/2010", 24123},  {true, "25/03/2010", 24123}, {true, "25/02/2010", 24122},
      {false, "26/02/2010", 24122}, {true, "26/03/2010", 24123},
  };
  for (const auto& [calcInMidYN, date, month] : months)
    EXPECT_EQ(FnLngSalaryMonthOfDate({data, calcInMidYN}, date), month) << date;

  const std::tuple<bool, long, const char*, const char*> spans[] = {
      {true, 24123, "26/02/2010", "31/03/2010"},
      {false, 24123, "01/03/2010", "31/03/2010"},
      {true, 24132, "01/12/2010", "31/12/2010"},
  };
  for (const auto& [calcInMidYN, month, expectedFirst, expectedLast] : spans) {
    Date first, last;
    GetMonthDates({data, calcInMidYN}, month, first, last);
    EXPECT_EQ(first, *ParseDate(expectedFirst)) << month;
    EXPECT_EQ(last, *ParseDate(expectedLast)) << month;
  }
  EXPECT_EQ(FnDteMonthStart({data, true}, 0), Date());  // no such date: nothing is said
  EXPECT_TRUE(desk.Boxes().empty());
}

}  // namespace
}  // namespace ktl
