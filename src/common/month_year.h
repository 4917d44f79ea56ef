#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "runtime/date.h"

namespace ktl {

class DataAccess;

// A month-year is year * 12 + month (January 1, December 12); 0 is no month. "Apr/2010" is its text.
long MonthYearOf(const Date& date);
Date FirstDayOf(long monthYear);  // of a month that is one
// As screens show a date: "dd/mm/yyyy", "" for none.
std::string ShownDate(const std::optional<Date>& date);
long FnLngMonthYear(std::string_view dateText);        // 0 when the text is no date
std::string FnStrFormatMonthYear(long monthYear);      // "" for zero or less
std::string FnStrExplodeMonth(long monthYear);         // as above, but 0 gives December of year -1
std::string FnStrCorrectMonth(std::string_view text);  // "3.2010" gives "Mar/2010"; "" when it is no month

// Of a date column's text in a statement: "dd/mmm/yyyy".
std::string FnStrDbDate(std::string_view dateText);

// False when the date's month lies before the company's first month.
bool FnBlnMonthAllowed(long startMonthYear, std::string_view dateText);

// Salary months that do not follow the calendar: CALCINMIDYN.
struct SalaryCalendar {
  DataAccess& data;
  bool calcInMidYN;
};
long FnLngSalaryMonthOfDate(const SalaryCalendar& calendar, std::string_view dateText);
Date FnDteMonthStart(const SalaryCalendar& calendar, long monthYear);
Date FnDteMonthEnd(const SalaryCalendar& calendar, long monthYear);
void GetMonthDates(const SalaryCalendar& calendar, long monthYear, Date& first, Date& last);

// The statement that lists the financial years, newest first; its column is LSTYEAR.
std::string FnStrGetFinYearQry(bool tdsMar2Feb, std::string_view dbType = "SQL");

class clsDateHandle {
 public:
  static std::string FnStrCorrectDate(std::string_view text);  // "dd/MM/yyyy", "" when it is no date
  static std::string FnStrInDateDTM(const Date& date);         // "dd/MMM/yyyy"
  static std::string FnStrFirstDayofMonth(long monthYear);     // "1/Apr/2010"
  static std::string FnStrLastDayofMonth(long monthYear);      // "30/Apr/2010"
  static long FnLngFindMVFromDate(const Date& date);
  static long FnLngFindMonthValue(std::string_view monthText);  // error 13 when it is no month
  static long FnLngNumDaysInMonth(long monthYear);              // every fourth year is a leap year, 1900 too
  static std::string FnStrExplodeMonth(long monthYear);         // "" for 0
  static std::string FnStrFindCurYearStr(const Date& date, int year);
  static Date FndteFindCurYearDate(const Date& anniversary, int year, const Date& yearStart);
};

}  // namespace ktl
