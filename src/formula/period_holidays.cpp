#include "formula/period_holidays.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "common/amounts.h"
#include "common/month_year.h"
#include "formula/employee_reads.h"

namespace ktl {
namespace {

constexpr int kDays = 31;
constexpr int kWeeks = 5;
constexpr int kNextWhole = 2;

void AddGeneral(EmployeeReads& reads, const char* column, long id, const DayRange& range,
                std::set<Date>& dates) {
  Recordset rows = reads.Rows(
      fmt::format("SELECT HOLIDAYDATE FROM ATT_HOLIDAY AH WHERE HOLIDAYDATE BETWEEN '{2}' AND '{3}' AND "
                  "({0} IS NULL OR {0} = 0 OR {0} = {1}) AND HOLIDAYID NOT IN "
                  "(SELECT HOLIDAYID FROM ATT_HOLEX WHERE {0} = {1})",
                  column, id, IsoDay(range.first), IsoDay(range.last)));
  for (; !rows.Eof(); rows.MoveNext()) dates.insert(rows[0].ToDate().DayOnly());
}

}  // namespace

int WeekdayKey(const Date& date) {
  static const std::array<int, kDays> kWeekOfDay = [] {
    std::array<int, kDays> weeks{};
    for (int day = 1; day <= kDays; ++day)
      weeks[static_cast<std::size_t>(day) - 1] = static_cast<int>(FnDblRoundByType(kNextWhole, day / 7.0));
    return weeks;
  }();
  return date.weekday() * 10 + kWeekOfDay[static_cast<std::size_t>(date.day()) - 1];
}

PeriodHolidays::PeriodHolidays(EmployeeReads& reads, const HolidayOwner& owner, const DayRange& range) {
  const std::string days = fmt::format("{} to {}", IsoDay(range.first), IsoDay(range.last));
  const auto rotation = [&](const std::string& ofOwner) {
    return reads.Once<Rotation>(fmt::format("rotation {} {}", ofOwner, days),
                                [&] { return ReadRotation(reads, ofOwner, range); });
  };
  if (owner.empId != 0) ofEmployee_ = ReadRotation(reads, "EMPID = " + reads.Employee(owner.empId), range);
  ofHead_ = rotation(fmt::format("ATTHEADID = {} AND EMPID = 0", owner.attHeadId));
  ofAll_ = rotation("ATTHEADID = 0 AND EMPID = 0");
  const long month = MonthYearOf(range.last);
  pattern_ = reads.Once<Pattern>(fmt::format("pattern {} {} {}", owner.attHeadId, owner.branchId, month),
                                 [&] { return ReadPattern(reads, owner, month); });
  general_ = reads.Once<Dates>(fmt::format("general {} {} {}", owner.attHeadId, owner.branchId, days),
                               [&] { return ReadGeneral(reads, owner, range); });
}

PeriodHolidays::Rotation PeriodHolidays::ReadRotation(EmployeeReads& reads, const std::string& ofOwner,
                                                      const DayRange& range) {
  Recordset rows = reads.Rows(
      fmt::format("SELECT WEEKDATE, FIRSTHALFYN, SECONDHALFYN FROM ATT_WKLYROT WHERE {} AND WEEKDATE BETWEEN "
                  "'{}' AND '{}'",
                  ofOwner, IsoDay(range.first), IsoDay(range.last)));
  Rotation rotation;
  for (; !rows.Eof(); rows.MoveNext()) {
    HolidayHalves& halves = rotation[rows["WEEKDATE"].ToDate().DayOnly()];
    halves.first |= IsSet(rows["FIRSTHALFYN"]);
    halves.second |= IsSet(rows["SECONDHALFYN"]);
  }
  return rotation;
}

// Each weekday stands on its own latest row.
PeriodHolidays::Pattern PeriodHolidays::ReadPattern(EmployeeReads& reads, const HolidayOwner& owner,
                                                    long monthYear) {
  const bool ofBranch =
      reads
          .Read(fmt::format("select COUNT(WHID) from LEV_WEEKLYHLDBRANCH WHERE EFFFROM <= {} AND BRANCHID={}",
                            monthYear, owner.branchId),
                0)
          .ToLong() > 0;
  const std::string table = ofBranch ? "LEV_WEEKLYHLDBRANCH" : "LEV_WEEKLYHLD";
  const std::string ofOwner =
      ofBranch ? fmt::format("BRANCHID={}", owner.branchId) : fmt::format("ATTHEADID={}", owner.attHeadId);
  Recordset rows = reads.Rows(
      fmt::format("SELECT * FROM {0} WH WHERE {1} AND EFFFROM=(SELECT MAX(EFFFROM) FROM {0} WHERE {1} AND "
                  "WEEKID=WH.WEEKID AND EFFFROM <= {2})",
                  table, ofOwner, monthYear));
  Pattern pattern;
  for (; !rows.Eof(); rows.MoveNext()) {
    for (int week = 1; week <= kWeeks; ++week) {
      HolidayHalves& halves = pattern[static_cast<int>(rows["WEEKID"].ToLong()) * 10 + week];
      halves.first |= IsSet(rows[fmt::format("FH{}YN", week)]);
      halves.second |= IsSet(rows[fmt::format("SH{}YN", week)]);
    }
  }
  return pattern;
}

// Holidays belong to heads, and to branches from the day in BRGHEFROM on.
PeriodHolidays::Dates PeriodHolidays::ReadGeneral(EmployeeReads& reads, const HolidayOwner& owner,
                                                  const DayRange& range) {
  const Value branchesFrom = reads.Read("SELECT BRGHEFROM FROM MAS_OPTSET", {});
  const bool byBranch = branchesFrom.IsDate() || branchesFrom.IsText();
  const Date change = byBranch ? branchesFrom.ToDate().DayOnly() : range.last.AddDays(1);
  const DayRange ofHead{range.first, std::min(range.last, change.AddDays(-1))};
  const DayRange ofBranch{std::max(range.first, change), range.last};
  Dates dates;
  if (ofHead.first <= ofHead.last) AddGeneral(reads, "ATTHEADID", owner.attHeadId, ofHead, dates);
  if (ofBranch.first <= ofBranch.last) AddGeneral(reads, "BRANCHID", owner.branchId, ofBranch, dates);
  return dates;
}

HolidayHalves PeriodHolidays::Weekly(const Date& date) const {
  for (const Rotation* rotation : {&ofEmployee_, ofHead_.get(), ofAll_.get()})
    if (const auto day = rotation->find(date); day != rotation->end()) return day->second;
  const auto weekday = pattern_->find(WeekdayKey(date));
  return weekday == pattern_->end() ? HolidayHalves() : weekday->second;
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
