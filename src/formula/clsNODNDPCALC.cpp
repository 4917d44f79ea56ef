#include "formula/clsNODNDPCALC.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "common/month_year.h"
#include "formula/employee_reads.h"
#include "frame/session.h"

namespace ktl {

namespace {

struct LoadedHead {
  AttHeadSettings settings;
  AttHeadOptions options;
};

}  // namespace

struct clsNODNDPCALC::LeaveDay {
  long kind;
  bool affectsSalary;
  double days;

  bool IsOf(LeaveSelection selection) const {
    if (selection == LeaveSelection::LossOfPay) return kind == 1;
    return selection == LeaveSelection::NotPresent || affectsSalary;
  }
};

clsNODNDPCALC::clsNODNDPCALC(Session& session, modAttSetting& settings)
    : clsNODNDPCALC(session, settings, std::make_shared<EmployeeReads>(session.data)) {}

clsNODNDPCALC::clsNODNDPCALC(Session& session, modAttSetting& settings, std::shared_ptr<EmployeeReads> reads)
    : session_(session), settings_(settings), reads_(std::move(reads)), attendance_(session, reads_) {}

DayCounts clsNODNDPCALC::SetNODNDP(const DayRequest& request) {
  Update_MonthYear();
  const DayRules rules = LoadRules(request.attHeadId, request.monthYear);
  const DayRange month = MonthRange(request.monthYear);
  DayRequest served = request;
  served.period = InService(request.empId, month, request.period);
  const DayRange whole{std::min(month.first, served.period.first), std::max(month.last, served.period.last)};
  const PeriodHolidays holidays = HolidaysOf(request.attHeadId, request.empId, whole);
  const bool generalFirst = settings_.options.HOLPRIORITY != 0;
  std::optional<std::vector<LeaveDay>> leave;
  return CountDays(
      rules, month, served,
      {.holidays = [&](DayKind kind,
                       const DayRange& range) { return holidays.Count(kind, range, generalFirst); },
       .monthlyLeave =
           [&](LeaveSelection selection) {
             return attendance_.FnDblGetLeaveMnthly(served.empId, served.empDetId, served.monthYear,
                                                    selection);
           },
       .dailyLeave =
           [&](LeaveSelection selection) {
             if (!leave) leave = ReadLeave(request, served.period, holidays);
             double days = 0;
             for (const LeaveDay& day : *leave) days += day.IsOf(selection) ? day.days : 0;
             return days;
           }});
}

double clsNODNDPCALC::FnDblGetNWD(long lngAttHeadID, long lngMonthYear, long lngEmpID) {
  const DayRules rules = LoadRules(lngAttHeadID, lngMonthYear);
  return MonthFigure(rules, MonthRange(lngMonthYear), {.holidays = [&](DayKind kind, const DayRange& range) {
                       return FnDblGetHolAndLeave(lngAttHeadID, range, lngEmpID, kind);
                     }});
}

double clsNODNDPCALC::FnDblGetHolAndLeave(long lngAttHeadID, const DayRange& range, long lngEmpID,
                                          DayKind kind, LeaveSelection selection) {
  if (kind != DayKind::Leave) {
    settings_.LoadHeadOptions(lngAttHeadID);
    return HolidaysOf(lngAttHeadID, lngEmpID, range).Count(kind, range, settings_.options.HOLPRIORITY != 0);
  }
  return reads_
      ->Read(fmt::format("SELECT SUM(FIRSTHALFYN)/2.0 + SUM(SECONDHALFYN)/2.0 FROM LEV_DETAILS WHERE "
                         "EMPID = {} AND LEAVEDATE BETWEEN '{}' AND '{}' AND LEVID IN ({})",
                         reads_->Employee(lngEmpID), IsoDay(range.first), IsoDay(range.last),
                         LeaveSelectionSql(selection)),
             0)
      .ToDouble();
}

HolidayLists clsNODNDPCALC::ListHoliday(long lngAttHeadID, const DayRange& range, long lngEmpID) {
  const PeriodHolidays holidays = HolidaysOf(lngAttHeadID, lngEmpID, range);
  HolidayLists lists;
  const auto add = [](std::string& list, const Date& day) {
    list += fmt::format("{}{}", list.empty() ? "" : ",", day.day());
  };
  for (Date day = range.first; day <= range.last; day = day.AddDays(1)) {
    if (holidays.IsGeneral(day)) add(lists.general, day);
    if (holidays.Weekly(day).Days() > 0) add(lists.weekly, day);
  }
  return lists;
}

double clsNODNDPCALC::FnDblWeeklyHoliday(const Date& date, long lngAttHeadID, long lngEmpID) {
  return HolidaysOf(lngAttHeadID, lngEmpID, {date, date}).Weekly(date).Days();
}

bool clsNODNDPCALC::FnBlnGenHoliday(const Date& date, long lngAttHeadID, long lngEmpID) {
  return HolidaysOf(lngAttHeadID, lngEmpID, {date, date}).IsGeneral(date);
}

bool clsNODNDPCALC::FnBlnEmpExist(long lngEmpID, const Date& date) {
  return reads_
             ->Read(fmt::format("SELECT COUNT(EMPID) FROM MAS_EMPLOYEE WHERE EMPID={0} AND DOJ<='{1}' AND "
                                "(DOL IS NULL OR DOL>='{1}')",
                                reads_->Employee(lngEmpID), IsoDay(date)),
                    0)
             .ToLong() > 0;
}

DayRange clsNODNDPCALC::SetValidPeriod(long lngEmpID, const DayRange& range) {
  const std::string employee = reads_->Employee(lngEmpID);
  const std::string first = IsoDay(range.first);
  const std::string last = IsoDay(range.last);
  DayRange valid;
  valid.first = reads_
                    ->Read(fmt::format("SELECT DOJ FROM MAS_EMPLOYEE WHERE EMPID={} AND DOJ>='{}' AND "
                                       "DOJ<='{}'",
                                       employee, first, last),
                           range.first)
                    .ToDate();
  valid.last = reads_
                   ->Read(fmt::format("SELECT DOL FROM MAS_EMPLOYEE WHERE EMPID={} AND DOL>='{}' AND "
                                      "(DOL<='{}' AND DOL IS NOT NULL)",
                                      employee, first, last),
                          range.last)
                   .ToDate();
  return valid;
}

double clsNODNDPCALC::FnDblLeaveAvailed(long lngEmpID, long lngLevID, const DayRange& range,
                                        long lngAttHeadID, long lngEmpDetID) {
  const Date detailEnd =
      reads_
          ->Read(fmt::format("SELECT EFFTODATE FROM MAS_EMPLOYEEDET WHERE EMPID={} AND EMPDETID={}",
                             reads_->Employee(lngEmpID), reads_->DetailRow(lngEmpDetID)),
                 range.last)
          .ToDate();
  // Few detail rows end inside a range; each of these is asked for alone.
  const std::string employee = detailEnd < range.last ? std::to_string(lngEmpID) : reads_->Employee(lngEmpID);
  const std::string head = lngAttHeadID == 0 ? "" : reads_->Head(lngAttHeadID);
  const std::string between =
      fmt::format("BETWEEN '{}' AND '{}'", IsoDay(range.first), IsoDay(std::min(range.last, detailEnd)));
  const std::string ofHead = lngAttHeadID == 0 ? "" : fmt::format(" AND ATTHEADID = {}", head);
  const double adjusted =
      reads_
          ->Read(fmt::format(
                     "SELECT TAKEN FROM LEV_ADJUSTMENT WHERE EMPID = {} AND LEVID = {}{} AND ASONDATE {}",
                     employee, lngLevID, ofHead, between),
                 0)
          .ToDouble();
  const std::string taken =
      lngAttHeadID == 0
          ? fmt::format("SELECT SUM(TAKEN) FROM LEV_DETAILS WHERE LEVID = {} AND EMPID = {} AND LEAVEDATE {}",
                        lngLevID, employee, between)
          : fmt::format(
                "SELECT SUM(CASE WHEN LEVMONTHLY = 0 OR LEVMONTHLY IS NULL THEN CONVERT(NUMERIC, (CASE WHEN "
                "FIRSTHALFYN = 0 THEN 0 ELSE 1 END + CASE WHEN SECONDHALFYN = 0 THEN 0 ELSE 1 END))/ 2 ELSE "
                "LEVMONTHLY END) FROM LEV_DETAILS LD, MAS_EMPLOYEEDET ME WHERE LD.LEVID = {} AND LD.EMPID = "
                "{} AND LD.EMPID = ME.EMPID AND LD.EMPDETID = ME.EMPDETID AND ME.ATTHEADID = {} AND "
                "LEAVEDATE {}",
                lngLevID, employee, head, between);
  return adjusted + reads_->Read(taken, 0).ToDouble();
}

// Once for all employees of this object: nothing takes a month or a head away meanwhile.
void clsNODNDPCALC::Update_MonthYear() {
  if (monthsComplete_) return;
  Recordset months(session_.Cn,
                   "SELECT * FROM MAS_MONTHYEAR WHERE CALCSTARTDATE IS NULL OR CALCENDDATE IS NULL",
                   OpenMode::Update);
  for (; !months.Eof(); months.MoveNext()) {
    const DayRange range = MonthRange(months["MONTHYEAR"].ToLong());
    if (months["CALCSTARTDATE"].IsNull()) months.Set("CALCSTARTDATE", range.first);
    if (months["CALCENDDATE"].IsNull()) months.Set("CALCENDDATE", range.last);
    months.Update();
  }
  session_.Cn.Execute(
      "INSERT INTO SLC_ATTHEADNOD SELECT ATTHEADID, MONTHYEAR, DATEDIFF(DAY, CALCSTARTDATE, CALCENDDATE) + "
      "1, NULL FROM MAS_MONTHYEAR MM, MAS_ATTHEAD MA WHERE NOT EXISTS (SELECT 1 FROM SLC_ATTHEADNOD N WHERE "
      "N.ATTHEADID = MA.ATTHEADID AND N.MONTHYEAR = MM.MONTHYEAR) AND ISNULL(TDSPORTYN, 0) <> 1");
  monthsComplete_ = true;
}

long clsNODNDPCALC::FnIntAttHeadID(long lngEmpID, const Date& date) {
  return reads_->Read(DetailRowOnDateSql("ATTHEADID", lngEmpID, date), 0).ToLong();
}

long clsNODNDPCALC::FnIntBranchID(long lngEmpID, const Date& date) {
  const Value branch = reads_->Read(DetailRowOnDateSql("BRANCHID", lngEmpID, date), {});
  if (!branch.IsEmpty()) return branch.ToLong();
  // Without such a row it is the branch of the very first detail row, whoever's that is.
  return reads_->Read("SELECT top 1 BRANCHID FROM MAS_EMPLOYEEDET  order by empdetid", 0).ToLong();
}

std::string clsNODNDPCALC::DetailRowOnDateSql(const char* column, long empId, const Date& date) const {
  return fmt::format(
      "SELECT {0} FROM MAS_EMPLOYEE ME, MAS_EMPLOYEEDET MD WHERE ME.EMPID = MD.EMPID AND ME.EMPID = {1} AND "
      "EFFFROMDATE <= '{2}' AND (EFFTODATE IS NULL OR EFFTODATE >= '{2}') AND SALCALCFROM <= '{2}'",
      column, reads_->Employee(empId), IsoDay(date));
}

PeriodHolidays clsNODNDPCALC::HolidaysOf(long attHeadId, long empId, const DayRange& range) {
  return {*reads_, {empId, attHeadId, FnIntBranchID(empId, range.last)}, range};
}

DayRange clsNODNDPCALC::MonthRange(long monthYear) {
  return *reads_->Once<DayRange>(fmt::format("period month {}", monthYear), [&] {
    return DayRange{settings_.FnDteMonthCalcStart(monthYear), settings_.FnDteMonthCalcEnd(monthYear)};
  });
}

DayRules clsNODNDPCALC::LoadRules(long attHeadId, long monthYear) {
  const auto head = reads_->Once<LoadedHead>(fmt::format("head {}", attHeadId), [&] {
    settings_.LoadHeadSettings(attHeadId);
    return LoadedHead{settings_.head, settings_.options};
  });
  settings_.head = head->settings;
  settings_.options = head->options;
  DayRules rules{.nodForCalc = settings_.head.NODFORCALC,
                 .monthly = settings_.head.ATTNTYPE == kMonthlyHead,
                 .tight = settings_.head.TIGHTYN};
  if (rules.nodForCalc == kHeadDays) rules.headDays = ReadHeadDays(*reads_, attHeadId, monthYear);
  return rules;
}

// Salary may begin, and service end, inside the month.
DayRange clsNODNDPCALC::InService(long empId, const DayRange& month, const DayRange& period) {
  const Recordset service = reads_->Rows(
      fmt::format("SELECT SALCALCFROM, DOL FROM MAS_EMPLOYEE WHERE EMPID={}", reads_->Employee(empId)));
  DayRange served = period;
  if (service.Eof()) return served;
  const auto inMonth = [&](const Value& date) {
    return !date.IsNull() && month.Holds(date.ToDate().DayOnly());
  };
  if (inMonth(service[0])) served.first = std::max(served.first, service[0].ToDate().DayOnly());
  if (inMonth(service[1])) served.last = std::min(served.last, service[1].ToDate().DayOnly());
  return served;
}

// What is left of each leave of the period, read once for all that is asked of it. Kinds 2 and 3 are passed
// over.
std::vector<clsNODNDPCALC::LeaveDay> clsNODNDPCALC::ReadLeave(const DayRequest& request,
                                                              const DayRange& served,
                                                              const PeriodHolidays& holidays) {
  // Few join or leave inside a period; each of these is asked for alone.
  const bool whole = served == request.period;
  Recordset rows = reads_->Rows(
      fmt::format("SELECT * FROM  LEV_DETAILS DET,ATT_DEFINITION DEF WHERE DET.LEVID = DEF.LEVID AND "
                  "LEAVEYN = 1 AND EMPID = {} AND EMPDETID = {} AND LEAVEDATE BETWEEN  '{}' AND '{}'",
                  whole ? reads_->Employee(request.empId) : std::to_string(request.empId),
                  whole ? reads_->DetailRow(request.empDetId) : std::to_string(request.empDetId),
                  IsoDay(served.first), IsoDay(served.last)));
  std::vector<LeaveDay> days;
  for (; !rows.Eof(); rows.MoveNext()) {
    const long kind = rows["LEVID"].ToLong();
    if (kind != 1 && kind <= 3) continue;
    const HolidayHalves halves{IsSet(rows["FIRSTHALFYN"]), IsSet(rows["SECONDHALFYN"])};
    days.push_back({kind, IsSet(rows["AFFECTSALARYYN"]),
                    LeaveOnDay(rows["LEAVEDATE"].ToDate().DayOnly(), halves, holidays)});
  }
  return days;
}

// A half of a day is one thing only: a half of leave on a half of a weekly holiday is holiday and no leave,
// and so is all leave on a general holiday. The first of the two tests that finds a holiday decides: the
// weekly one, but the general one for NODFORCALC 6. For 4 the general test stands alone, so leave on a weekly
// holiday comes off although that day has come off already. A head with COCWYN counts leave that runs on over
// a weekly holiday; there the weekly test is left out.
double clsNODNDPCALC::LeaveOnDay(const Date& date, const HolidayHalves& leave,
                                 const PeriodHolidays& holidays) const {
  const int nodForCalc = settings_.head.NODFORCALC;
  const bool general = holidays.IsGeneral(date);
  const bool askWeekly = nodForCalc != kLessHolidays && !settings_.options.COCWYN;
  const HolidayHalves weekly = askWeekly ? holidays.Weekly(date) : HolidayHalves();
  const bool weeklyDecides = weekly.Days() > 0 && !(general && nodForCalc == kLessWeekly);
  if (general && !weeklyDecides) return 0;
  return HolidayHalves{leave.first && !weekly.first, leave.second && !weekly.second}.Days();
}

}  // namespace ktl
