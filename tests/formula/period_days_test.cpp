#include "formula/clsNODNDPCALC.h"
#include "formula_fixture.h"

namespace ktl::test {
namespace {

constexpr const char* kWeekly =
    " (WEEKID, EFFFROM, FH1YN, SH1YN, FH2YN, SH2YN, FH3YN, SH3YN, FH4YN, SH4YN, FH5YN, SH5YN, ";

// Advanced leave for employee 17: Sundays, and the second and fourth Saturday afternoon of head 1. In
// September 2026 the Sundays are the 6th, 13th, 20th and 27th, the Saturdays the days before them.
class PeriodDays : public DayTest {
 protected:
  PeriodDays()
      : office(company.ConnectionString()), settings(office.session), days(office.session, settings) {
    Weekly("LEV_WEEKLYHLD", "ATTHEADID", 1, "1, 24000, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1");
    Weekly("LEV_WEEKLYHLD", "ATTHEADID", 1, "7, 24000, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0");
    Run("INSERT INTO ATT_HOLIDAY (HOLIDAYID, HOLIDAYDATE, ATTHEADID, BRANCHID) VALUES (1, '14/Sep/2026', "
        "NULL, NULL), "
        "(2, '13/Sep/2026', 1, NULL), (3, '12/Sep/2026', 0, NULL), (4, '15/Sep/2026', 2, NULL), "
        "(5, '16/Sep/2026', NULL, NULL); "
        "INSERT INTO ATT_HOLEX (HOLIDAYID, ATTHEADID) VALUES (5, 1)");
  }

  void Weekly(const std::string& table, const std::string& column, int owner, const std::string& flags) {
    company.Execute("INSERT INTO " + table + kWeekly + column + ") VALUES (" + flags + ", " +
                    std::to_string(owner) + ")");
  }
  void Leave(const char* date, int kind, int first, int second) {
    company.Row("LEV_DETAILS")
        .With("EMPID", 17)
        .With("EMPDETID", 5)
        .With("LEVID", kind)
        .With("LEAVEDATE", date)
        .With("FIRSTHALFYN", first)
        .With("SECONDHALFYN", second);
  }
  double Count(DayKind kind, const DayRange& range = MonthOf("Sep/2026")) {
    return days.FnDblGetHolAndLeave(1, range, 17, kind);
  }
  DayRequest September() const { return {17, 5, 24321, 1, MonthOf("Sep/2026")}; }

  Office office;
  modAttSetting settings;
  clsNODNDPCALC days;
};

TEST(WeekdayKey, IsTheWeekdayAndItsNumberInTheMonth) {
  const std::tuple<const char*, int> cases[] = {
      {"01/Sep/2026", 31}, {"07/Sep/2026", 21}, {"08/Sep/2026", 32}, {"14/Sep/2026", 22},
      {"15/Sep/2026", 33}, {"21/Sep/2026", 23}, {"22/Sep/2026", 34}, {"28/Sep/2026", 24},
      {"29/Sep/2026", 35}, {"05/Sep/2026", 71}, {"06/Sep/2026", 11}, {"31/Oct/2026", 75}};
  for (const auto& [date, key] : cases) EXPECT_EQ(WeekdayKey(Day(date)), key) << date;
}

TEST_F(PeriodDays, HolidaysOfHeadsAndBranches) {
  constexpr const char* kPattern = "INSERT INTO LEV_WEEKLYHLD (ATTHEADID, WEEKID, EFFFROM, FH3YN) VALUES ";
  constexpr const char* kBranch =
      "INSERT INTO LEV_WEEKLYHLDBRANCH (WHID, BRANCHID, WEEKID, EFFFROM, FH1YN, SH1YN) VALUES ";
  const std::tuple<const char*, const char*, double, double, double> cases[] = {
      // 4 Sundays and the afternoons of the 12th and 26th; 12, 13 and 14: the 13th counts once, the 12th is
      // topped up.
      {"", "", 5, 3, 6.5},
      {kPattern, "(1, 7, 24321, 1)", 4.5, 3, 6.5},  // a newer row for Saturdays alone
      {kPattern, "(1, 7, 24322, 1)", 5, 3, 6.5},    // in force later
      {kBranch, "(1, 1, 6, 24000, 1, 1)", 1, 3, 4},
      {kBranch, "(1, 1, 6, 24322, 1, 1), (2, 2, 6, 24000, 1, 1)", 5, 3, 6.5},  // later, another branch
      // A date's own row comes before the pattern, the other dates stay on it.
      {kRotation, "(17, 0, '02/Sep/2026', 1, 1), (0, 1, '03/Sep/2026', 1, 0)", 6.5, 3, 8},
      {kRotation, "(0, 0, '07/Sep/2026', 1, 1), (0, 2, '08/Sep/2026', 1, 1), (18, 0, '09/Sep/2026', 1, 1)", 6,
       3, 7.5},
      // Of several owners' rows for one date the employee's counts, then the head's.
      {kRotation,
       "(17, 0, '06/Sep/2026', 0, 0), (0, 1, '06/Sep/2026', 1, 1), (0, 1, '20/Sep/2026', 1, 0), "
       "(0, 0, '20/Sep/2026', 1, 1), (0, 0, '27/Sep/2026', 0, 1), (17, 0, '13/Sep/2026', 0, 1)",
       2.5, 3, 4.5},
      // From that day on holidays belong to branches: those of heads are everybody's then.
      {"UPDATE MAS_OPTSET SET BRGHEFROM = '14/Sep/2026'; ",
       "UPDATE ATT_HOLIDAY SET BRANCHID = 2 WHERE HOLIDAYID = 1", 5, 4, 7.5},
      // Priority for the general holiday.
      {"INSERT INTO ATT_OPTSETTINGS (ATTHEADID, HOLPRIORITY) ", "VALUES (1, 1)", 3.5, 3, 6.5},
  };
  for (const auto& [table, rows, weekly, general, both] : cases) {
    const std::string change = std::string(table) + rows;
    SCOPED_TRACE(change);
    Run(change);
    EXPECT_DOUBLE_EQ(Count(DayKind::Weekly), weekly);
    EXPECT_DOUBLE_EQ(Count(DayKind::General), general);
    EXPECT_DOUBLE_EQ(Count(DayKind::Both), both);
    Run("DELETE FROM LEV_WEEKLYHLDBRANCH; DELETE FROM ATT_WKLYROT; DELETE FROM ATT_OPTSETTINGS; "
        "DELETE FROM LEV_WEEKLYHLD WHERE EFFFROM > 24000; UPDATE MAS_OPTSET SET BRGHEFROM = NULL; "
        "UPDATE ATT_HOLIDAY SET BRANCHID = NULL");
  }
  EXPECT_DOUBLE_EQ(days.FnDblWeeklyHoliday(Day("12/Sep/2026"), 1, 17), 0.5);
  EXPECT_DOUBLE_EQ(days.FnDblWeeklyHoliday(Day("05/Sep/2026"), 1, 17), 0);
  EXPECT_TRUE(days.FnBlnGenHoliday(Day("14/Sep/2026"), 1, 17));
  EXPECT_FALSE(days.FnBlnGenHoliday(Day("16/Sep/2026"), 1, 17));
  const HolidayLists lists = days.ListHoliday(1, MonthOf("Sep/2026"), 17);
  EXPECT_EQ(lists.weekly, "6,12,13,20,26,27");
  EXPECT_EQ(lists.general, "12,13,14");
}

// What is left of one leave: on Wednesday the 2nd, Saturday the 26th (free afternoon), the 12th (that and a
// general holiday), Sunday the 13th (also general), Sunday the 20th, and the general holiday of the 14th.
TEST_F(PeriodDays, LeaveOnHolidayHalves) {
  const std::tuple<int, bool, const char*, int, int, double> cases[] = {
      {2, false, "02/Sep/2026", 1, 1, 1},   {2, false, "02/Sep/2026", 0, 1, 0.5},
      {2, false, "20/Sep/2026", 1, 1, 0},   {2, false, "26/Sep/2026", 1, 1, 0.5},
      {2, false, "26/Sep/2026", 1, 0, 0.5}, {2, false, "26/Sep/2026", 0, 1, 0},
      {2, false, "14/Sep/2026", 1, 1, 0},   {2, false, "12/Sep/2026", 1, 1, 0.5},  // the weekly test decides
      {6, false, "12/Sep/2026", 1, 1, 0},                                          // the general one does
      {6, false, "26/Sep/2026", 1, 1, 0.5}, {4, false, "20/Sep/2026", 1, 1, 1},
      {4, false, "26/Sep/2026", 1, 1, 1},  // the weekly test is not made
      {4, false, "13/Sep/2026", 1, 1, 0},   {4, false, "14/Sep/2026", 1, 0, 0},
      {3, false, "14/Sep/2026", 1, 1, 0},   {2, true, "20/Sep/2026", 1, 1, 1},
      {2, true, "12/Sep/2026", 1, 1, 0},    {2, true, "14/Sep/2026", 1, 1, 0},
  };
  for (const auto& [nodForCalc, overHolidays, date, first, second, left] : cases) {
    SCOPED_TRACE(testing::Message() << nodForCalc << " " << date << " " << first << second << overHolidays);
    Run("DELETE FROM LEV_DETAILS; DELETE FROM ATT_OPTSETTINGS; UPDATE MAS_ATTHEAD SET NODFORCALC = " +
        std::to_string(nodForCalc));
    const DayCounts without = days.SetNODNDP(September());
    company.Row("ATT_OPTSETTINGS").With("ATTHEADID", 1).With("COCWYN", overHolidays);
    Leave(date, 4, first, second);
    const DayCounts with = days.SetNODNDP(September());
    EXPECT_DOUBLE_EQ(without.present - with.present, left);
    EXPECT_DOUBLE_EQ(without.pay, with.pay) << "casual leave is paid";
  }
}

TEST_F(PeriodDays, CountsOfAMonth) {
  Leave("02/Sep/2026", 4, 1, 1);
  Leave("03/Sep/2026", 1, 1, 0);
  Leave("04/Sep/2026", 2, 1, 1);  // passed over
  Leave("08/Sep/2026", 8, 1, 1);  // no leave
  Run("INSERT INTO ATT_MONTH (ATTSLNO, EMPID, EMPDETID, MONTHYEAR) VALUES (1, 17, 5, 24321); "
      "INSERT INTO ATT_MONTHLEV (ATTSLNO, LEVID, LEVVALUE) VALUES (1, 4, 2), (1, 7, 3); "
      "INSERT INTO MAS_MONTHYEAR (MONTHYEAR) VALUES (24321)");
  const std::tuple<const char*, double, double, double> cases[] = {
      {"MAS_ATTHEAD SET NODFORCALC = 2", 30, 29.5, 28.5},
      {"MAS_ATTHEAD SET NODFORCALC = 4", 23.5, 23, 15.5},  // 6.5 twice off the present days
      {"MAS_ATTHEAD SET NODFORCALC = 6", 25, 24.5, 20.5},  // 5 weekly, then 3 general
      {"MAS_ATTHEAD SET NODFORCALC = 3", 30, 29.5, 28.5},  // the row that the first count has made
      {"MAS_ATTHEAD SET NODFORCALC = 2, ATTNTIGHTYN = 0", 30, 29.5, 29.5},
      {"MAS_ATTHEAD SET NODFORCALC = 2, ATTNTYPE = 4", 30, 27, 25},
      {"MAS_EMPLOYEE SET SALCALCFROM = '07/Sep/2026'", 30, 24, 24},  // 6 days and both leaves before it
      {"MAS_EMPLOYEE SET DOL = '02/Sep/2026'", 30, 2, 1},
      {"MAS_EMPLOYEE SET DOL = '02/Oct/2026', SALCALCFROM = '31/Aug/2026'", 30, 29.5, 28.5},
  };
  for (const auto& [set, calendar, pay, present] : cases) {
    SCOPED_TRACE(set);
    Run("UPDATE MAS_ATTHEAD SET ATTNTYPE = 2, ATTNTIGHTYN = 1, NODFORCALC = 2; "
        "UPDATE MAS_EMPLOYEE SET SALCALCFROM = '01/Apr/2008', DOL = NULL; UPDATE " +
        std::string(set));
    const DayCounts counts = days.SetNODNDP(September());
    EXPECT_DOUBLE_EQ(counts.calendar, calendar);
    EXPECT_DOUBLE_EQ(counts.pay, pay);
    EXPECT_DOUBLE_EQ(counts.present, present);
  }
  // Holidays before the joining day are not in the period: 24 days less the Sundays and general days left.
  Run("UPDATE MAS_ATTHEAD SET NODFORCALC = 4; UPDATE MAS_EMPLOYEE SET SALCALCFROM = '07/Sep/2026', DOL = "
      "NULL");
  EXPECT_DOUBLE_EQ(days.SetNODNDP(September()).pay, 18.5);
  EXPECT_DOUBLE_EQ(days.FnDblNODLimit(1, 24321), 23.5);
}

TEST_F(PeriodDays, LeaveAvailed) {
  Leave("02/Sep/2026", 4, 1, 1);
  Leave("10/Sep/2026", 4, 0, 1);
  Leave("11/Sep/2026", 1, 1, 1);
  Run("INSERT INTO LEV_DETAILS (EMPID, EMPDETID, LEVID, LEAVEDATE, LEVMONTHLY, TAKEN) VALUES (17, 5, 4, "
      "'30/Sep/2026', "
      "2.5, 3); "
      "INSERT INTO LEV_ADJUSTMENT (EMPID, LEVID, ATTHEADID, ASONDATE, TAKEN) VALUES (17, 4, 1, "
      "'05/Sep/2026', 4), "
      "(17, 4, 2, '06/Sep/2026', 9), (17, 4, 1, '05/Oct/2026', 7)");
  const auto availed = [&](long head) { return days.FnDblLeaveAvailed(17, 4, MonthOf("Sep/2026"), head, 5); };
  EXPECT_DOUBLE_EQ(availed(1), 8);  // 4 carried in, 1 and a half by days, 2.5 by the month
  EXPECT_DOUBLE_EQ(availed(2), 9);  // the detail row is not on that head
  EXPECT_DOUBLE_EQ(availed(0), 7);  // 4 and what is entered as taken
  Run("UPDATE MAS_EMPLOYEEDET SET EFFTODATE = '09/Sep/2026'");
  EXPECT_DOUBLE_EQ(availed(1), 5);
  const auto taken = [&](LeaveSelection selection) {
    return days.FnDblGetHolAndLeave(1, MonthOf("Sep/2026"), 17, DayKind::Leave, selection);
  };
  EXPECT_DOUBLE_EQ(taken(LeaveSelection::Leave), 2.5);
  EXPECT_DOUBLE_EQ(taken(LeaveSelection::AffectsSalary), 1);
  EXPECT_DOUBLE_EQ(taken(LeaveSelection::NotLeave), 0);
}

TEST_F(PeriodDays, MonthsAndHeadsAreMadeComplete) {
  Run("INSERT INTO MAS_MONTHYEAR (MONTHYEAR, CALCSTARTDATE, TDSPORTYN) VALUES (24321, '05/Sep/2026', 0), "
      "(24322, NULL, NULL), (24323, NULL, 1); "
      "INSERT INTO SLC_ATTHEADNOD (ATTHEADID, MONTHYEAR, NOD) VALUES (1, 24322, 26)");
  days.Update_MonthYear();
  EXPECT_EQ(
      company.Rows("SELECT MONTHYEAR, CALCSTARTDATE, CALCENDDATE FROM MAS_MONTHYEAR ORDER BY MONTHYEAR"),
      "24321|05/09/2026|30/09/2026\n24322|01/10/2026|31/10/2026\n24323|01/11/2026|30/11/2026");
  EXPECT_EQ(company.Rows("SELECT ATTHEADID, MONTHYEAR, NOD FROM SLC_ATTHEADNOD ORDER BY MONTHYEAR"),
            "1|24321|26\n1|24322|26")
      << "from the 5th to the 30th; what is there stays; the third month is not wanted";
  EXPECT_EQ(settings.FnLngMonthOfDate(Day("15/Oct/2026")), 24322);
  EXPECT_EQ(settings.FnLngMonthOfDate(Day("04/Sep/2026")), 0);
}

TEST_F(PeriodDays, EmployeesOnADate) {
  Run("UPDATE MAS_EMPLOYEEDET SET EFFTODATE = '15/Sep/2026'; "
      "INSERT INTO MAS_EMPLOYEEDET (EMPDETID, EMPID, EFFFROMDATE, BRANCHID, ATTHEADID) VALUES (3, 99, "
      "'01/Jan/2000', 7, 2),"
      "(9, 17, '16/Sep/2026', 3, 4); "
      "UPDATE MAS_EMPLOYEE SET DOJ = '10/Sep/2026', SALCALCFROM = '12/Sep/2026', DOL = '20/Sep/2026'");
  const std::tuple<const char*, bool, long, long> cases[] = {
      {"09/Sep/2026", false, 0, 7},  // the branch of the first detail row of all
      {"11/Sep/2026", true, 0, 7},  {"12/Sep/2026", true, 1, 1}, {"15/Sep/2026", true, 1, 1},
      {"16/Sep/2026", true, 4, 3},  {"20/Sep/2026", true, 4, 3}, {"21/Sep/2026", false, 4, 3}};
  for (const auto& [date, exists, head, branch] : cases) {
    SCOPED_TRACE(date);
    EXPECT_EQ(days.FnBlnEmpExist(17, Day(date)), exists);
    EXPECT_EQ(days.FnIntAttHeadID(17, Day(date)), head);
    EXPECT_EQ(days.FnIntBranchID(17, Day(date)), branch);
  }
  const std::tuple<const char*, const char*, const char*, const char*> ranges[] = {
      {"01/Sep/2026", "30/Sep/2026", "10/Sep/2026", "20/Sep/2026"},
      {"11/Sep/2026", "19/Sep/2026", "11/Sep/2026", "19/Sep/2026"},
      {"10/Sep/2026", "20/Sep/2026", "10/Sep/2026", "20/Sep/2026"},
      {"01/Oct/2026", "31/Oct/2026", "01/Oct/2026", "31/Oct/2026"}};
  for (const auto& [first, last, validFirst, validLast] : ranges) {
    const DayRange valid = days.SetValidPeriod(17, {Day(first), Day(last)});
    EXPECT_EQ(valid.first, Day(validFirst)) << first;
    EXPECT_EQ(valid.last, Day(validLast)) << last;
  }
}

TEST_F(PeriodDays, SettingsOfAHead) {
  Run("UPDATE MAS_ATTHEAD SET ATTMENUNAME = NULL, ATTHEADNAME = 'General shift', FullDayCutOff = 7.5, OT1YN "
      "= 1, ATTNTYPE "
      "= 3; INSERT INTO ATT_OPTSETTINGS (ATTHEADID, DEFVAL, HOLPRIORITY, COCWYN) VALUES (1, 3, 2, 1)");
  settings.LoadHeadSettings(1);
  EXPECT_EQ(settings.head.MENUNAME, "General sh") << "ten characters of the name";
  EXPECT_EQ(settings.head.ATTCAP, "Attendance - Hourly");
  EXPECT_TRUE(settings.head.OT1YN);
  EXPECT_DOUBLE_EQ(settings.head.FullDayCutOff, 7.5);
  EXPECT_DOUBLE_EQ(settings.head.OTMINHOUR, 0) << "a null limit replaces the default";
  EXPECT_EQ(settings.options.HOLPRIORITY, 2);
  EXPECT_TRUE(settings.options.COCWYN);
  settings.LoadHeadSettings(99);
  EXPECT_EQ(settings.head.ATTHEADNAME, "General");
  EXPECT_DOUBLE_EQ(settings.head.OTMINHOUR, 120);
  EXPECT_FALSE(settings.options.COCWYN);
}

}  // namespace
}  // namespace ktl::test
