#include "runtime/date.h"

#include <gtest/gtest.h>

#include "runtime/errors.h"

namespace ktl {
namespace {

constexpr const char* kFull = "yyyy-mm-dd hh:nn:ss";

Date Day(int year, int month, int day) { return Date::FromYmd(year, month, day).value(); }

TEST(Dates, ReadDayFirst) {
  const std::pair<const char*, std::string> days[] = {
      {"12/3/2010", "2010-03-12"},  {"1/Apr/2010", "2010-04-01"},     {"01-04-2010", "2010-04-01"},
      {"2010-04-01", "2010-04-01"}, {" 1 april 2010 ", "2010-04-01"}, {"3/2010", "2010-03-01"},
      {"aPR/2010", "2010-04-01"},   {"29/2/2008", "2008-02-29"},      {"1/1/00", "2000-01-01"},
      {"31/12/29", "2029-12-31"},   {"1/1/30", "1930-01-01"},         {"1/1/99", "1999-01-01"},
      {"1/1/100", "0100-01-01"},
  };
  for (const auto& [text, day] : days) {
    ASSERT_TRUE(IsDate(text)) << text;
    EXPECT_EQ(FormatDate(ParseDate(text).value(), kFull), day + " 00:00:00") << text;
  }
  const std::pair<const char*, const char*> times[] = {
      {"12/3/2010 9:05", "2010-03-12 09:05:00"},          {"12/3/2010 12:00:01 AM", "2010-03-12 00:00:01"},
      {"12/3/2010 10:30 pm", "2010-03-12 22:30:00"},      {"3/2010 10:30", "2010-03-01 10:30:00"},
      {"2010-04-01T23:59:59.997", "2010-04-01 23:59:59"},
  };
  for (const auto& [text, time] : times) {
    ASSERT_TRUE(IsDate(text)) << text;
    EXPECT_EQ(FormatDate(ParseDate(text).value(), kFull), time) << text;
  }
  const char* const noSuchDay[] = {"01/13/2010", "30/2/2010", "29/2/2010", "31/4/2010", "0/4/2010",
                                   "1/1/0050",   "1/1/5",     "1/1/10000", "13/2010"};
  for (const char* text : noSuchDay) EXPECT_FALSE(ParseDate(text) || IsDate(text)) << text;
  const char* const noDate[] = {"Apr/1/2010", "3/10",  "Apr/10", "1/Foo/2010", "1/4/2010x", "40000",
                                "10.50",      "1,200", "10:30",  "/",          ""};
  for (const char* text : noDate) EXPECT_FALSE(ParseDate(text) || IsDate(text)) << text;
  for (const char* text : {"1/4/2010 10", "1/4/2010 25:00", "1/4/2010 13:00 PM"})
    EXPECT_FALSE(ParseDate(text) || IsDate(text)) << text;
}

TEST(Dates, FormatByPattern) {
  const Date date = Date::FromYmd(2010, 4, 1, 13, 5, 9).value();
  const std::pair<const char*, const char*> cases[] = {
      {"dd/mmm/yyyy", "01/Apr/2010"},
      {"DD/MMM/YYYY", "01/Apr/2010"},
      {"d/m/yy", "1/4/10"},
      {"dddd, dd mmmm yyyy", "Thursday, 01 April 2010"},
      {"ddd", "Thu"},
      {"mm/yyyy", "04/2010"},
      {"hh:mm:ss", "13:05:09"},
      {"hh:mm mm", "13:05 04"},
      {"hh:nn AM/PM", "01:05 PM"},
      {"h:n:s", "13:5:9"},
  };
  for (const auto& [pattern, text] : cases) EXPECT_EQ(FormatDate(date, pattern), text) << pattern;
  EXPECT_EQ(FormatDate(Day(2010, 4, 1), "hh AM/PM"), "12 AM");
  EXPECT_EQ(FormatDateText("1/4/2010", "Mmm/yyyy"), "Apr/2010");
  EXPECT_EQ(FormatDateText("31/4/2010", "Mmm/yyyy"), "31/4/2010");
}

TEST(Dates, SerialNumbers) {
  EXPECT_EQ(Date().serial(), 0);
  EXPECT_EQ(Date(), Day(1899, 12, 30));
  EXPECT_EQ(Day(1900, 1, 1).serial(), 2);
  EXPECT_EQ(Day(2010, 4, 1).serial(),
            40269);  // 110 years of 365, 27 leap days, 90 days of 2010 and the 2 of 1900
  EXPECT_EQ(Date::FromSerial(40269.75), Date::FromYmd(2010, 4, 1, 18));
  EXPECT_EQ(Date::FromSerial(-1.25), Date::FromYmd(1899, 12, 29, 6));
  EXPECT_EQ(Date::FromYmd(1899, 12, 29, 6)->serial(), -1.25);
  EXPECT_THROW(Date::FromSerial(3e6), RuntimeError);
  EXPECT_THROW(Date::FromSerial(-657435), RuntimeError);
}

TEST(Dates, Arithmetic) {
  EXPECT_EQ(Day(2010, 1, 31).AddMonths(1), Day(2010, 2, 28));
  EXPECT_EQ(Day(2008, 2, 29).AddMonths(12), Day(2009, 2, 28));
  EXPECT_EQ(Day(2010, 1, 31).AddMonths(-2), Day(2009, 11, 30));
  EXPECT_EQ(Day(2010, 3, 1).AddDays(-1), Day(2010, 2, 28));
  EXPECT_EQ(Day(1960, 1, 1).AddDays(-1), Day(1959, 12, 31));
  EXPECT_EQ(DaysBetween(*Date::FromYmd(2010, 3, 1, 23), *Date::FromYmd(2010, 3, 2, 1)), 1);
  EXPECT_EQ(DaysBetween(Day(1970, 1, 2), Day(1969, 12, 31)), -2);
  EXPECT_EQ(Date::FromYmd(1950, 5, 5, 7, 8, 9)->DayOnly(), Day(1950, 5, 5));
  EXPECT_EQ(Date::FromYmd(1950, 5, 5, 7, 8, 9)->minute(), 8);
  EXPECT_EQ(Day(2010, 4, 4).weekday(), 1);  // a Sunday
  EXPECT_EQ(Day(1969, 12, 27).weekday(), 7);
  EXPECT_THROW(Day(9999, 12, 31).AddDays(1), RuntimeError);
  EXPECT_THROW(Day(100, 1, 1).AddMonths(-1), RuntimeError);
}

}  // namespace
}  // namespace ktl
