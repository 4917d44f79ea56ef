#include "common/fetch.h"

#include <gtest/gtest.h>

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
  EXPECT_TRUE(data.FnBlnRecExists("SELECT * FROM MAS_INSTITUTION WHERE INSTID = 5"));
  EXPECT_FALSE(data.FnBlnRecExists("SELECT * FROM MAS_INSTITUTION WHERE INSTID = 6"));
  EXPECT_TRUE(desk.Boxes().empty());
}

TEST_F(FetchTest, AFailureIsToldAndGivesNothingNotTheDefault) {
  data.SetTitle("Loans");
  EXPECT_TRUE(data.FnVarGetDbValue("SELECT NOWHERE FROM MAS_INSTITUTION", 7).IsEmpty());
  ASSERT_EQ(desk.Boxes().size(), 1u);
  EXPECT_TRUE(desk.LastBox().text.ends_with(" : " + std::to_string(kStatementError))) << desk.LastBox().text;
  EXPECT_EQ(desk.LastBox().icon, Icon::Critical);
  EXPECT_EQ(desk.LastBox().title, "Loans");
  desk.TakeBoxes();
  EXPECT_TRUE(data.FnVarGetDbValue("SELECT NOWHERE FROM MAS_INSTITUTION", 7, true).IsEmpty());
  EXPECT_FALSE(data.ExecuteSql("DELETE FROM NOWHERE"));
  EXPECT_TRUE(data.ExecuteSql("DELETE FROM MAS_INSTITUTION"));
  EXPECT_TRUE(desk.Boxes().empty());
  EXPECT_THROW(data.FnBlnRecExists("SELECT * FROM NOWHERE"), DatabaseError);
}

TEST_F(FetchTest, NullAndZeroGiveWayToTheAlternative) {
  const struct {
    Value value;
    bool zeroToo;
    bool givesWay;
  } cases[] = {
      {Null{}, false, true}, {Null{}, true, true}, {0, false, false},     {0, true, true},
      {0.0, true, true},     {"0.00", true, true}, {"", true, false},     {"x", true, false},
      {0.001, true, false},  {-1, true, false},    {Date(), true, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CNull(c.value, "other", c.zeroToo), c.givesWay ? Value("other") : c.value)
        << (c.value.IsNull() ? "null" : c.value.ToText()) << (c.zeroToo ? " with zero" : "");
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
  EXPECT_EQ(desk.LastBox().text + "|" + desk.LastBox().title, "Delete This Record ?|Confirm Deleting :");
}

// March 2010 runs from 26 February; its end is not kept.
TEST_F(FetchTest, SalaryMonthsOfTheMidMonthCycle) {
  company.Execute("DELETE FROM MAS_MONTHYEAR");
  company.Row("MAS_MONTHYEAR").With("MONTHYEAR", 24123).With("CALCSTARTDATE", "26/Feb/2010");
  company.Row("MAS_MONTHSALDATE")
      .With("MONTHYEAR", 24123)
      .With("CALCSTARTDATE", "26/Feb/2010")
      .With("CALCENDDATE", "25/Mar/2010");
  const struct {
    bool calcInMidYN;
    const char* date;
    long month;
  } months[] = {
      {true, "26/02/2010", 24123},  {true, "25/03/2010", 24123}, {true, "25/02/2010", 24122},
      {false, "26/02/2010", 24122}, {true, "26/03/2010", 24123},
  };
  for (const auto& c : months)
    EXPECT_EQ(FnLngSalaryMonthOfDate({data, c.calcInMidYN}, c.date), c.month) << c.date;

  const struct {
    bool calcInMidYN;
    long month;
    const char* first;
    const char* last;
  } spans[] = {
      {true, 24123, "26/02/2010", "31/03/2010"},
      {false, 24123, "01/03/2010", "31/03/2010"},
      {true, 24132, "01/12/2010", "31/12/2010"},
  };
  for (const auto& c : spans) {
    Date first, last;
    GetMonthDates({data, c.calcInMidYN}, c.month, first, last);
    EXPECT_EQ(first, *ParseDate(c.first)) << c.month;
    EXPECT_EQ(last, *ParseDate(c.last)) << c.month;
  }
  EXPECT_EQ(FnDteMonthStart({data, true}, 0), Date());  // no such date: nothing is said
  EXPECT_TRUE(desk.Boxes().empty());
}

}  // namespace
}  // namespace ktl
