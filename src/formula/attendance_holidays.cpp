#include "formula/attendance_holidays.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/month_year.h"
#include "formula/employee_reads.h"

namespace ktl {
namespace {

constexpr const char* kLeaveKinds = "(Select LEVID From ATT_DEFINITION Where LEAVEYN = 1)";
constexpr int kWeek = 7;

std::string Between(const char* column, const DayRange& range) {
  return fmt::format("{} Between '{}' And '{}'", column, clsDateHandle::FnStrInDateDTM(range.first),
                     clsDateHandle::FnStrInDateDTM(range.last));
}

// Sunday is 1; 0 for a name that is none.
int WeekdayByName(const std::string& name) {
  Date day;
  for (int step = 0; step < kWeek; ++step, day = day.AddDays(1))
    if (FormatDate(day, "dddd") == name) return day.weekday();
  return 0;
}

}  // namespace

double AttendanceHolidays::Count(DayKind kind) {
  double days = 0;
  if (kind == DayKind::Both || kind == DayKind::Weekly) days += WeeklyDays(kind);
  if ((kind == DayKind::Both || kind == DayKind::General) && attHeadId_ != 0) days += GeneralDays(kind);
  return days;
}

// Rotation rows of the employee, of his head, of everybody; the first owner with a row in the range that is
// not on leave is the only one looked at.
double AttendanceHolidays::WeeklyDays(DayKind kind) {
  const std::string owners[] = {
      empId_ == 0 ? std::string() : fmt::format("EMPID = {}", reads_.Employee(empId_)),
      fmt::format("ATTHEADID = {} And EMPID = 0", reads_.Head(attHeadId_)), "ATTHEADID = 0 And EMPID = 0"};
  for (const std::string& owner : owners) {
    if (owner.empty()) continue;
    if (const auto days = RotationDays(owner, range_)) {
      rotation_ = owner;
      return *days;
    }
  }
  return PatternDays(kind);
}

std::optional<double> AttendanceHolidays::RotationDays(const std::string& owner, const DayRange& range) {
  Recordset rows = reads_.Rows(
      fmt::format("Select (FIRSTHALFYN/2.0) + (SECONDHALFYN/2.0) From ATT_WKLYROT Where {} And {} And "
                  "WEEKDATE Not In {}",
                  owner, Between("WEEKDATE", range), LeaveDates()));
  if (rows.Eof()) return std::nullopt;
  double days = 0;
  for (; !rows.Eof(); rows.MoveNext()) days += rows[0].NumberOr0();
  return days;
}

// A half of the pattern that is on leave is not counted, the other half is; leave on the half that is worked
// changes nothing. Under both kinds a general holiday is left to the general part, which counts the whole
// day.
double AttendanceHolidays::PatternDays(DayKind kind) {
  const auto pattern = reads_.Once<std::vector<PatternDay>>(fmt::format("weekly pattern {}", attHeadId_),
                                                            [&] { return ReadPattern(); });
  if (pattern->empty()) return 0;
  const auto leave = LeaveHalves();
  const auto general = kind == DayKind::Both ? GeneralDates() : std::set<Date>();
  double days = 0;
  for (const PatternDay& off : *pattern) {
    Date day = range_.first.AddDays((off.weekday - range_.first.weekday() + kWeek) % kWeek);
    for (; day <= range_.last; day = day.AddDays(kWeek)) {
      if (general.contains(day)) continue;
      const auto onLeave = leave.find(day);
      const HolidayHalves taken = onLeave == leave.end() ? HolidayHalves() : onLeave->second;
      days += HolidayHalves{off.halves.first && !taken.first, off.halves.second && !taken.second}.Days();
    }
  }
  return days;
}

std::vector<AttendanceHolidays::PatternDay> AttendanceHolidays::ReadPattern() {
  Recordset rows = reads_.Rows(
      fmt::format("Select PD.PDLISTNAME, (HW.FIRSTHALF/2.0) + (HW.SECONDHALF/2.0) As HDAY,HW.FIRSTHALF,"
                  "HW.SECONDHALF From MAS_PULLDOWNVALUES PD, ATT_WEEKLY HW Where HW.ATTHEADID = {} And "
                  "HW.WEEKID = PD.PDID And PD.REFID = 16",
                  attHeadId_));
  std::vector<PatternDay> pattern;
  for (; !rows.Eof(); rows.MoveNext()) {
    if (const int weekday = WeekdayByName(rows["PDLISTNAME"].TextOrEmpty()); weekday > 0)
      pattern.push_back({weekday, {IsSet(rows["FIRSTHALF"]), IsSet(rows["SECONDHALF"])}});
  }
  return pattern;
}

// Under both kinds the part of the day that was counted as a weekly holiday is topped up to one day.
double AttendanceHolidays::GeneralDays(DayKind kind) {
  const std::string head = reads_.Head(attHeadId_);
  const std::string notOnLeave =
      fmt::format("{} And HOLIDAYDATE Not In {}", Between("HOLIDAYDATE", range_), LeaveDates());
  std::set<Date> dates;
  AddDates(fmt::format("Select HOLIDAYDATE From ATT_HOLIDAY Where ATTHEADID = {} And {}", head, notOnLeave),
           dates);
  AddDates(
      fmt::format("Select HOLIDAYDATE From ATT_HOLIDAY Where ATTHEADID Is Null And HOLIDAYID Not In (Select "
                  "HOLIDAYID From ATT_HOLEX Where ATTHEADID = {}) And {}",
                  head, notOnLeave),
      dates);
  double days = 0;
  for (const Date& date : dates) {
    const bool countedByRotation = kind == DayKind::Both && !rotation_.empty();
    const double counted = countedByRotation ? RotationDays(rotation_, {date, date}).value_or(0) : 0;
    days += std::max(0.0, 1 - counted);
  }
  return days;
}

std::set<Date> AttendanceHolidays::GeneralDates() {
  std::set<Date> dates;
  if (attHeadId_ == 0) return dates;
  AddDates(fmt::format("Select HOLIDAYDATE From ATT_HOLIDAY Where (ATTHEADID = {0} Or (ATTHEADID Is Null And "
                       "HOLIDAYID Not In (Select HOLIDAYID From ATT_HOLEX Where ATTHEADID = {0}))) And {1}",
                       attHeadId_, Between("HOLIDAYDATE", range_)),
           dates);
  return dates;
}

void AttendanceHolidays::AddDates(const std::string& sql, std::set<Date>& dates) {
  for (Recordset rows = reads_.Rows(sql); !rows.Eof(); rows.MoveNext())
    dates.insert(rows[0].ToDate().DayOnly());
}

// All of the range in one read: a day may have rows of several leave kinds.
std::map<Date, HolidayHalves> AttendanceHolidays::LeaveHalves() {
  std::map<Date, HolidayHalves> halves;
  Recordset rows = reads_.Rows(fmt::format(
      "Select LEVDATE,FIRSTHALFYN,SECONDHALFYN From ATT_DETAIL Where LEVID In {} And {} And EMPID = {}",
      kLeaveKinds, Between("LEVDATE", range_), reads_.Employee(empId_)));
  for (; !rows.Eof(); rows.MoveNext()) {
    HolidayHalves& taken = halves[rows["LEVDATE"].ToDate().DayOnly()];
    taken.first |= IsSet(rows["FIRSTHALFYN"]);
    taken.second |= IsSet(rows["SECONDHALFYN"]);
  }
  return halves;
}

std::string AttendanceHolidays::LeaveDates() const {
  return fmt::format("(Select LEVDATE From ATT_DETAIL Where LEVID In {} And EMPID = {} And {})", kLeaveKinds,
                     reads_.Employee(empId_), Between("LEVDATE", range_));
}

}  // namespace ktl
