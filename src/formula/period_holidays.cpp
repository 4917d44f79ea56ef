#include "formula/period_holidays.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/amounts.h"
#include "common/month_year.h"
#include "database/recordset.h"

namespace ktl {
namespace {

constexpr int kWeeks = 5;
constexpr int kNextWhole = 2;

}  // namespace

int WeekdayKey(const Date& date) {
  return date.weekday() * 10 + static_cast<int>(FnDblRoundByType(kNextWhole, date.day() / 7.0));
}

PeriodHolidays::PeriodHolidays(Connection& cn, const HolidayOwner& owner, const DayRange& range) {
  ReadRotation(cn, owner, range);
  ReadPattern(cn, owner, MonthYearOf(range.last));
  ReadGeneral(cn, owner, range);
}

// For one date the row of the employee comes before that of his head, and that before everybody's.
void PeriodHolidays::ReadRotation(Connection& cn, const HolidayOwner& owner, const DayRange& range) {
  const std::string owners[] = {fmt::format("EMPID = {}", owner.empId),
                                fmt::format("ATTHEADID = {} AND EMPID = 0", owner.attHeadId),
                                "ATTHEADID = 0 AND EMPID = 0"};
  for (const std::string& ofOwner : owners) {
    if (owner.empId == 0 && &ofOwner == &owners[0]) continue;
    Recordset rows(
        cn, fmt::format("SELECT WEEKDATE, FIRSTHALFYN, SECONDHALFYN FROM ATT_WKLYROT WHERE {} AND WEEKDATE "
                        "BETWEEN '{}' AND '{}'",
                        ofOwner, IsoDay(range.first), IsoDay(range.last)));
    std::map<Date, HolidayHalves> dates;
    for (; !rows.Eof(); rows.MoveNext()) {
      HolidayHalves& halves = dates[rows["WEEKDATE"].ToDate().DayOnly()];
      halves.first |= IsSet(rows["FIRSTHALFYN"]);
      halves.second |= IsSet(rows["SECONDHALFYN"]);
    }
    rotation_.merge(dates);
  }
}

// Each weekday stands on its own latest row.
void PeriodHolidays::ReadPattern(Connection& cn, const HolidayOwner& owner, long monthYear) {
  const bool ofBranch =
      ReadValue(cn,
                fmt::format("select COUNT(WHID) from LEV_WEEKLYHLDBRANCH WHERE EFFFROM <= {} AND BRANCHID={}",
                            monthYear, owner.branchId),
                0)
          .ToLong() > 0;
  const std::string table = ofBranch ? "LEV_WEEKLYHLDBRANCH" : "LEV_WEEKLYHLD";
  const std::string ofOwner =
      ofBranch ? fmt::format("BRANCHID={}", owner.branchId) : fmt::format("ATTHEADID={}", owner.attHeadId);
  Recordset rows(
      cn, fmt::format("SELECT * FROM {0} WH WHERE {1} AND EFFFROM=(SELECT MAX(EFFFROM) FROM {0} WHERE {1} "
                      "AND WEEKID=WH.WEEKID AND EFFFROM <= {2})",
                      table, ofOwner, monthYear));
  for (; !rows.Eof(); rows.MoveNext()) {
    for (int week = 1; week <= kWeeks; ++week) {
      HolidayHalves& halves = pattern_[static_cast<int>(rows["WEEKID"].ToLong()) * 10 + week];
      halves.first |= IsSet(rows[fmt::format("FH{}YN", week)]);
      halves.second |= IsSet(rows[fmt::format("SH{}YN", week)]);
    }
  }
}

// Holidays belong to heads, and to branches from the day in BRGHEFROM on.
void PeriodHolidays::ReadGeneral(Connection& cn, const HolidayOwner& owner, const DayRange& range) {
  const Value branchesFrom = ReadValue(cn, "SELECT BRGHEFROM FROM MAS_OPTSET", {});
  const bool byBranch = branchesFrom.IsDate() || branchesFrom.IsText();
  const Date change = byBranch ? branchesFrom.ToDate().DayOnly() : range.last.AddDays(1);
  const DayRange ofHead{range.first, std::min(range.last, change.AddDays(-1))};
  const DayRange ofBranch{std::max(range.first, change), range.last};
  if (ofHead.first <= ofHead.last) ReadGeneralOf(cn, "ATTHEADID", owner.attHeadId, ofHead);
  if (ofBranch.first <= ofBranch.last) ReadGeneralOf(cn, "BRANCHID", owner.branchId, ofBranch);
}

void PeriodHolidays::ReadGeneralOf(Connection& cn, const char* column, long id, const DayRange& range) {
  Recordset rows(
      cn, fmt::format("SELECT HOLIDAYDATE FROM ATT_HOLIDAY AH WHERE HOLIDAYDATE BETWEEN '{2}' AND '{3}' AND "
                      "({0} IS NULL OR {0} = 0 OR {0} = {1}) AND HOLIDAYID NOT IN "
                      "(SELECT HOLIDAYID FROM ATT_HOLEX WHERE {0} = {1})",
                      column, id, IsoDay(range.first), IsoDay(range.last)));
  for (; !rows.Eof(); rows.MoveNext()) general_.insert(rows[0].ToDate().DayOnly());
}

HolidayHalves PeriodHolidays::Weekly(const Date& date) const {
  if (const auto day = rotation_.find(date); day != rotation_.end()) return day->second;
  const auto weekday = pattern_.find(WeekdayKey(date));
  return weekday == pattern_.end() ? HolidayHalves() : weekday->second;
}

double PeriodHolidays::Count(DayKind kind, const DayRange& range, bool generalFirst) const {
  double days = 0;
  for (Date day = range.first; day <= range.last; day = day.AddDays(1)) {
    const bool general = IsGeneral(day);
    if (kind == DayKind::Both) {
      days += general ? 1 : Weekly(day).Days();
    } else if (kind == DayKind::General) {
      days += general ? 1 : 0;
    } else if (kind == DayKind::Weekly && !(general && generalFirst)) {
      days += Weekly(day).Days();
    }
  }
  return days;
}

}  // namespace ktl
