#include "common/month_year.h"

#include <gtest/gtest.h>

#include <tuple>

#include "runtime/errors.h"

namespace ktl {
namespace {

Date Day(const char* text) { return ParseDate(text).value(); }

TEST(MonthYear, NumberAndText) {
  const std::pair<long, const char*> cases[] = {{24121, "Jan/2010"},
                                                {24132, "Dec/2010"},
                                                {24133, "Jan/2011"},
                                                {22800, "Dec/1899"},
                                                {36066, "Jun/3005"}};
  for (const auto& [monthYear, text] : cases) {
    EXPECT_EQ(FnStrFormatMonthYear(monthYear), text);
    EXPECT_EQ(clsDateHandle::FnStrExplodeMonth(monthYear), text);
    EXPECT_EQ(FnLngMonthYear(text), monthYear);
    EXPECT_EQ(clsDateHandle::FnLngFindMonthValue(text), monthYear);
  }
  EXPECT_EQ(FnLngMonthYear("31/12/2010"), 24132);
  EXPECT_EQ(clsDateHandle::FnLngFindMVFromDate(Day("31/12/2010")), 24132);
  EXPECT_EQ(FnLngMonthYear(""), 0);
  EXPECT_EQ(FnLngMonthYear("Foo/2010"), 0);
  EXPECT_EQ(FnStrFormatMonthYear(0), "");
  EXPECT_EQ(FnStrFormatMonthYear(-1), "");
  EXPECT_EQ(FnStrExplodeMonth(0), "Dec/-1");
  EXPECT_EQ(FnStrExplodeMonth(-1), "Nov/-1");
  EXPECT_EQ(clsDateHandle::FnStrExplodeMonth(0), "");
  EXPECT_THROW(clsDateHandle::FnLngFindMonthValue("10"), RuntimeError);
}

TEST(MonthYear, DaysOfTheMonth) {
  const std::tuple<long, long, const char*> cases[] = {
      {24132, 31, "31/Dec/2010"}, {24122, 28, "28/Feb/2010"}, {24110, 28, "28/Feb/2009"},
      {24098, 29, "29/Feb/2008"}, {24124, 30, "30/Apr/2010"}, {1900 * 12 + 2, 29, "29/Feb/1900"},
  };
  for (const auto& [monthYear, days, last] : cases) {
    EXPECT_EQ(clsDateHandle::FnLngNumDaysInMonth(monthYear), days);
    EXPECT_EQ(clsDateHandle::FnStrLastDayofMonth(monthYear), last);
  }
  EXPECT_EQ(clsDateHandle::FnStrFirstDayofMonth(24124), "1/Apr/2010");
}

TEST(MonthYear, TypedMonthsAreCorrected) {
  const std::pair<const char*, const char*> cases[] = {
      {"3.2010", "Mar/2010"}, {"3_2010", "Mar/2010"}, {"3\\2010", "Mar/2010"},    {"apr 2010", "Apr/2010"},
      {"3,10", "Mar/2010"},   {"12-99", "Dec/1999"},  {"15/03/2010", "Mar/2010"}, {"2010-03-15", "Mar/2010"},
  };
  for (const auto& [typed, month] : cases) EXPECT_EQ(FnStrCorrectMonth(typed), month) << typed;
  for (const char* typed : {"31/02/2010", "13/2010", "/2010", "3", "", "1/2/3/2010", "foo/2010"})
    EXPECT_EQ(FnStrCorrectMonth(typed), "") << typed;
}

TEST(MonthYear, TypedDatesAreCorrected) {
  const std::pair<const char*, const char*> cases[] = {
      {"12.3.2010", "12/03/2010"},   {"12 3,2010", "12/03/2010"},   {"/12//3-2010", "12/03/2010"},
      {"12/a/3/2010", "12/03/2010"}, {"1\\4_10", "01/04/2010"},     {"12th/3/2010", "12/03/2010"},
      {"3/2010", "01/03/2010"},      {"12/Mar/2010", "01/12/2010"},
  };
  for (const auto& [typed, date] : cases) EXPECT_EQ(clsDateHandle::FnStrCorrectDate(typed), date) << typed;
  for (const char* typed : {"15/Mar/2010", "31/4/2010", "12/3/2010/", "12032010", ""})
    EXPECT_EQ(clsDateHandle::FnStrCorrectDate(typed), "") << typed;
  EXPECT_EQ(clsDateHandle::FnStrInDateDTM(Day("1/4/2010")), "01/Apr/2010");
  EXPECT_EQ(FnStrDbDate("1/4/2010"), "01/Apr/2010");
  EXPECT_EQ(FnStrDbDate("never"), "never");
}

TEST(MonthYear, NoMonthBeforeTheFirst) {
  EXPECT_FALSE(FnBlnMonthAllowed(24124, "31/03/2010"));
  EXPECT_TRUE(FnBlnMonthAllowed(24124, "01/04/2010"));
  EXPECT_THROW(FnBlnMonthAllowed(24124, ""), RuntimeError);
}

TEST(MonthYear, AnniversaryWithinTheYear) {
  const std::tuple<const char*, int, const char*, const char*> cases[] = {
      {"15/06/1980", 2010, "01/04/2000", "15/06/2010"}, {"15/02/1980", 2010, "01/04/2000", "15/02/2011"},
      {"01/04/1980", 2010, "01/04/2000", "01/04/2010"},  // the first day of the window
      {"31/03/1980", 2010, "01/04/2000", "31/03/2011"},  // behind its last day of the year before
      {"29/02/1980", 2010, "01/04/2000", "28/02/2011"}, {"29/02/1980", 2010, "01/01/2000", "28/02/2010"},
      {"29/02/1980", 2011, "01/04/2000", "29/02/2012"}, {"29/02/1980", 2008, "01/01/2000", "29/02/2008"},
      {"28/02/1980", 2011, "29/02/2000", "28/02/2011"},  // starts 28/02/2011, 2012 has the day
      {"28/02/1980", 2010, "29/02/2000", "28/02/2011"},  // 01/03/2010 to 28/02/2011
      {"28/02/1980", 2008, "29/02/2000", "28/02/2009"}, {"29/02/1980", 2008, "29/02/2000", "29/02/2008"},
  };
  for (const auto& [anniversary, year, yearStart, found] : cases)
    EXPECT_EQ(clsDateHandle::FndteFindCurYearDate(Day(anniversary), year, Day(yearStart)), Day(found))
        << anniversary << " in " << year << " from " << yearStart;
  EXPECT_EQ(clsDateHandle::FnStrFindCurYearStr(Day("01/01/1990"), 2010), "2010");
  EXPECT_EQ(clsDateHandle::FnStrFindCurYearStr(Day("01/04/1990"), 2010), "2010 - 2011");
}

TEST(MonthYear, FinancialYearStatements) {
  const std::string april = FnStrGetFinYearQry(false);
  EXPECT_EQ(
      april,
      "Select Distinct CAST(CASE WHEN ((MONTHYEAR % 12) >= 1 And (MONTHYEAR % 12) <= 3) Or (MONTHYEAR % 12) "
      "= 0"
      " THEN (MONTHYEAR / 12 - 1) ELSE (MONTHYEAR / 12) END As NVARCHAR) + ' - ' + CAST(CASE WHEN"
      " ((MONTHYEAR % 12) >= 1 And (MONTHYEAR % 12) <= 3) Or (MONTHYEAR % 12) = 0 THEN (MONTHYEAR / 12 - 1)"
      " ELSE (MONTHYEAR / 12) END + 1 As NVARCHAR) As LSTYEAR From MAS_MONTHYEAR Order By LSTYEAR Desc");
  const std::string march = FnStrGetFinYearQry(true);
  EXPECT_EQ(march.find("<= 3"), std::string::npos);
  EXPECT_NE(march.find("<= 2", march.find("<= 2") + 1), std::string::npos);
  for (const char* dialect : {"MYSQL", "ORA", "ACC97"})
    EXPECT_EQ(FnStrGetFinYearQry(true, dialect), FnStrGetFinYearQry(false, dialect)) << dialect;
}

}  // namespace
}  // namespace ktl
