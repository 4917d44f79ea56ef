#include "common/month_year.h"

#include <algorithm>
#include <array>
#include <optional>

#include "common/fetch.h"
#include "runtime/errors.h"
#include "runtime/text.h"
#include "screen/desk.h"

namespace ktl {
namespace {

constexpr std::string_view kMonthPattern = "Mmm/yyyy";
constexpr std::string_view kDayPattern = "dd/mmm/yyyy";

struct Month {
  long year;
  int month;
};

Month Decode(long monthYear) {
  const int month = static_cast<int>((monthYear % 12 + 12) % 12);
  const long year = (monthYear - month) / 12;
  return month == 0 ? Month{year - 1, 12} : Month{year, month};
}

Date DateOf(std::string_view text) {
  const std::optional<Date> date = ParseDate(text);
  if (!date) throw RuntimeError::TypeMismatch();
  return *date;
}

Date CalendarStart(long monthYear) { return DateOf("01/" + FnStrExplodeMonth(monthYear)); }

std::string WithSlashes(std::string_view text) {
  constexpr std::string_view kSeparators = ".-_\\ ,";
  std::string slashed(text);
  std::ranges::replace_if(
      slashed, [&](char c) { return kSeparators.find(c) != kSeparators.npos; }, '/');
  return slashed;
}

Date RangeDate(const SalaryCalendar& calendar, std::string_view column, long monthYear,
               const Date& calendarDate) {
  if (!calendar.calcInMidYN) return calendarDate;
  const Value date = calendar.data.FnVarGetDbValue(
      "SELECT " + std::string(column) + " FROM MAS_MONTHYEAR WHERE MONTHYEAR = " + std::to_string(monthYear),
      calendarDate);
  return DateOf(FormatDateText(date.ToText(), "DD/MMM/YYYY"));
}

bool IsLeapDay(const Date& date) { return date.month() == 2 && date.day() == 29; }

bool DividesBy4(int year) { return year % 4 == 0; }

// 29 February becomes the 28th in a year without one.
Date SameDayIn(const Date& date, int year) {
  const std::optional<Date> sameDay = Date::FromYmd(year, date.month(), date.day());
  return sameDay ? *sameDay : DateOf("28/Feb/" + std::to_string(year));
}

Date AnniversaryYearStart(const Date& yearStart, int year) {
  if (!IsLeapDay(yearStart) || DividesBy4(year)) return SameDayIn(yearStart, year);
  return DateOf((DividesBy4(year + 1) ? "28/FEB/" : "01/MAR/") + std::to_string(year));
}

constexpr std::string_view kFinYearTail = " As LSTYEAR From MAS_MONTHYEAR Order By LSTYEAR Desc";

std::string FinYearQrySql(bool tdsMar2Feb) {
  const std::string lastMonth = tdsMar2Feb ? "2" : "3";
  const std::string firstYear =
      " CAST(CASE WHEN ((MONTHYEAR % 12) >= 1 And (MONTHYEAR % 12) <= " + lastMonth +
      ") Or (MONTHYEAR % 12) = 0 THEN (MONTHYEAR / 12 - 1) ELSE (MONTHYEAR / 12) END";
  return "Select Distinct" + firstYear + " As NVARCHAR) + ' - ' +" + firstYear + " + 1 As NVARCHAR)" +
         std::string(kFinYearTail);
}

std::string FinYearQryMySql() {
  return "Select Distinct CONCAT(CAST(CASE WHEN ((MONTHYEAR % 12) >= 1 And (MONTHYEAR % 12) <= 3) Or"
         " (MONTHYEAR % 12) = 0 THEN (MONTHYEAR / 12 - 1) ELSE (MONTHYEAR / 12) END As CHAR(4)), ' - ',"
         " CAST(CASE WHEN ((MONTHYEAR % 12) >= 1 And (MONTHYEAR % 12) <= 3) Or"
         " (MONTHYEAR % 12) = 0 THEN (MONTHYEAR / 12 - 1) ELSE  (MONTHYEAR / 12) END + 1 As CHAR(4)))" +
         std::string(kFinYearTail);
}

std::string FinYearQryOracle() {
  const std::string firstYear =
      " TO_CHAR(DECODE(DECODE(MOD(MONTHYEAR, 12), 0, 12, MOD(MONTHYEAR, 12)), 1, TRUNC(MONTHYEAR / 12) - 1, "
      "2,"
      " TRUNC(MONTHYEAR / 12) - 1, 3, TRUNC(MONTHYEAR / 12) - 1, 12, TRUNC(MONTHYEAR / 12) - 1,"
      " TRUNC(MONTHYEAR / 12))";
  return "Select Distinct" + firstYear + ") || ' - ' ||" + firstYear + " + 1)" + std::string(kFinYearTail);
}

std::string FinYearQryAccess() {
  const std::string firstYear =
      " IIf((([MONTHYEAR] Mod 12) >= 1 And ([MONTHYEAR] Mod 12) <= 3) Or ([MONTHYEAR] Mod 12) = 0,"
      " [MONTHYEAR] \\ 12 - 1, [MONTHYEAR] \\ 12) ";
  const std::string label = firstYear + "& CHR$(32) & CHR$(45) & CHR$(32) &" + firstYear + "+ 1";
  return "Select Distinct" + label + " As LSTYEAR From MAS_MONTHYEAR Order By" + label + " Desc";
}

}  // namespace

long MonthYearOf(const Date& date) { return date.year() * 12L + date.month(); }

Date FirstDayOf(long monthYear) {
  const auto [year, month] = Decode(monthYear);
  return *Date::FromYmd(static_cast<int>(year), static_cast<int>(month), 1);
}

std::string ShownDate(const std::optional<Date>& date) { return date ? FormatDate(*date, "dd/mm/yyyy") : ""; }

long FnLngMonthYear(std::string_view dateText) {
  const std::optional<Date> date = ParseDate(dateText);
  return date ? MonthYearOf(*date) : 0;
}

std::string FnStrFormatMonthYear(long monthYear) {
  return monthYear <= 0 ? std::string() : FnStrExplodeMonth(monthYear);
}

std::string FnStrExplodeMonth(long monthYear) {
  constexpr std::array<const char*, 12> kMonths = {"Jan/", "Feb/", "Mar/", "Apr/", "May/", "Jun/",
                                                   "Jul/", "Aug/", "Sep/", "Oct/", "Nov/", "Dec/"};
  const auto [year, month] = Decode(monthYear);
  return kMonths.at(static_cast<std::size_t>(month - 1)) + std::to_string(year);
}

std::string FnStrCorrectMonth(std::string_view text) {
  std::string month = WithSlashes(text);
  if (std::ranges::count(month, '/') == 1) month = "01/" + FormatDateText(month, "mm/yyyy");
  const std::optional<Date> date = ParseDate(month);
  return date ? FormatDate(*date, kMonthPattern) : std::string();
}

std::string FnStrDbDate(std::string_view dateText) { return FormatDateText(dateText, kDayPattern); }

bool FnBlnMonthAllowed(long startMonthYear, std::string_view dateText) {
  return startMonthYear <= clsDateHandle::FnLngFindMonthValue(FormatDateText(dateText, kMonthPattern));
}

long FnLngSalaryMonthOfDate(const SalaryCalendar& calendar, std::string_view dateText) {
  const long month = clsDateHandle::FnLngFindMonthValue(FormatDateText(dateText, kMonthPattern));
  if (!calendar.calcInMidYN) return month;
  return calendar.data
      .FnVarGetDbValue("SELECT MONTHYEAR FROM MAS_MONTHSALDATE WHERE '" + FnStrDbDate(dateText) +
                           "' BETWEEN CALCSTARTDATE AND CALCENDDATE",
                       month)
      .ToLong();
}

Date FnDteMonthStart(const SalaryCalendar& calendar, long monthYear) {
  try {
    return RangeDate(calendar, "CALCSTARTDATE", monthYear, CalendarStart(monthYear));
  } catch (const RuntimeError& error) {
    if (error.number() != RuntimeError::TypeMismatch().number())
      calendar.data.desk().ShowError(error.description(), calendar.data.title());
    return {};
  }
}

Date FnDteMonthEnd(const SalaryCalendar& calendar, long monthYear) {
  return RangeDate(calendar, "CALCENDDATE", monthYear, CalendarStart(monthYear + 1).AddDays(-1));
}

void GetMonthDates(const SalaryCalendar& calendar, long monthYear, Date& first, Date& last) {
  first = FnDteMonthStart(calendar, monthYear);
  last = FnDteMonthEnd(calendar, monthYear);
}

std::string FnStrGetFinYearQry(bool tdsMar2Feb, std::string_view dbType) {
  if (dbType == "MYSQL") return FinYearQryMySql();
  if (dbType == "ORA") return FinYearQryOracle();
  if (dbType == "ACC97") return FinYearQryAccess();
  return FinYearQrySql(tdsMar2Feb);
}

std::string clsDateHandle::FnStrCorrectDate(std::string_view text) {
  std::string kept;
  for (const char c : WithSlashes(text)) {
    const bool isDigit = c >= '0' && c <= '9';
    const bool separates = c == '/' && !kept.empty() && kept.back() != '/';
    if (isDigit || separates) kept += c;
  }
  const std::optional<Date> date = ParseDate(kept);
  return date ? FormatDate(*date, "dd/MM/yyyy") : std::string();
}

std::string clsDateHandle::FnStrInDateDTM(const Date& date) { return FormatDate(date, kDayPattern); }

std::string clsDateHandle::FnStrFirstDayofMonth(long monthYear) {
  return "1/" + FnStrExplodeMonth(monthYear);
}

std::string clsDateHandle::FnStrLastDayofMonth(long monthYear) {
  return std::to_string(FnLngNumDaysInMonth(monthYear)) + "/" + FnStrExplodeMonth(monthYear);
}

long clsDateHandle::FnLngFindMVFromDate(const Date& date) {
  return FnLngFindMonthValue(FormatDate(date, kMonthPattern));
}

long clsDateHandle::FnLngFindMonthValue(std::string_view monthText) {
  return MonthYearOf(DateOf(FormatDateText("01/" + std::string(monthText), kDayPattern)));
}

long clsDateHandle::FnLngNumDaysInMonth(long monthYear) {
  constexpr std::array<long, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const auto [year, month] = Decode(monthYear);
  // No century rule: February 1900 has 29 days here.
  if (month == 2 && year % 4 == 0) return 29;
  return kDays.at(static_cast<std::size_t>(month - 1));
}

std::string clsDateHandle::FnStrExplodeMonth(long monthYear) {
  return monthYear == 0 ? std::string() : ktl::FnStrExplodeMonth(monthYear);
}

std::string clsDateHandle::FnStrFindCurYearStr(const Date& date, int year) {
  const std::string label = std::to_string(year);
  const bool startsWithTheYear = date.day() == 1 && date.month() == 1;
  return startsWithTheYear ? label : label + " - " + std::to_string(year + 1);
}

Date clsDateHandle::FndteFindCurYearDate(const Date& anniversary, int year, const Date& yearStart) {
  const Date start = AnniversaryYearStart(yearStart, year);
  const bool keepsLastDay = IsLeapDay(yearStart) && (DividesBy4(year) || DividesBy4(year + 1));
  const Date end = start.AddMonths(12).AddDays(keepsLastDay ? 0 : -1);
  const Date candidate = SameDayIn(anniversary, year);
  return candidate >= start && candidate <= end ? candidate : SameDayIn(anniversary, year + 1);
}

}  // namespace ktl
