#include "formula/day_count.h"

#include "formula/clsNODNDP.h"
#include "formula_fixture.h"

namespace ktl::test {
namespace {

struct Counts {
  double calendar, pay, present;
};

void ExpectCounts(const DayCounts& counts, const Counts& expected) {
  EXPECT_DOUBLE_EQ(counts.calendar, expected.calendar);
  EXPECT_DOUBLE_EQ(counts.pay, expected.pay);
  EXPECT_DOUBLE_EQ(counts.present, expected.present);
}

// April with 6 holidays (5 weekly, 2 general, one day both); its second half with 3 (2.5 and 1).
TEST(CountDays, ByNodForCalcAndKindOfHead) {
  const DayRange month = MonthOf("Apr/2010");
  const DayRange half{Day("16/Apr/2010"), month.last};
  const auto of = [](double both, double weekly, double general, DayKind kind) {
    return kind == DayKind::Both ? both : kind == DayKind::Weekly ? weekly : general;
  };
  const DaySources sources{
      .holidays =
          [&](DayKind kind, const DayRange& range) {
            return range.Days() == 30 ? of(6, 5, 2, kind) : of(3, 2.5, 1, kind);
          },
      .monthlyLeave = [](LeaveSelection kind) { return kind == LeaveSelection::NotPresent ? 3 : 1.5; },
      .dailyLeave =
          [](LeaveSelection kind) {
            return kind == LeaveSelection::NotPresent ? 2 : kind == LeaveSelection::AffectsSalary ? 1 : 0.5;
          }};
  enum Head { Daily, NotTight, Monthly };
  enum Flag { None, Keep, Cap };
  const std::tuple<int, Head, Flag, Counts> cases[] = {
      {1, Daily, None, {30, 29, 28}},        {2, Daily, None, {30, 14, 13}},
      {3, Daily, None, {26, 25, 24}},        {4, Daily, None, {24, 11, 7}},
      {5, Daily, None, {28, 13, 9.5}},    // general days off the month, weekly ones off the present days
      {6, Daily, None, {25, 11.5, 9.5}},  // and the other way round
      {7, Daily, None, {0, -1, -2}},         {1, Daily, Cap, {30, 14, 13}},
      {3, Daily, Cap, {26, 14, 13}},         {4, Daily, Keep, {24, 12, 12}},
      {2, NotTight, None, {30, 14.5, 14.5}}, {5, NotTight, None, {28, 13.5, 11}},
      {1, Monthly, None, {30, 28.5, 27}},    {4, Monthly, None, {24, 10.5, 6}},
  };
  for (const auto& [nodForCalc, head, flag, expected] : cases) {
    SCOPED_TRACE(testing::Message() << nodForCalc << " " << head << " " << flag);
    const DayRules rules{nodForCalc, head == Monthly, head != NotTight, 26};
    ExpectCounts(
        CountDays(rules, month, {.period = half, .keepPayDays = flag == Keep, .capToPeriod = flag == Cap},
                  sources),
        expected);
  }
}

class AttendanceDays : public DayTest {
 protected:
  // Sunday, and Saturday afternoon. Holidays: Wednesday the 14th and Sunday the 11th for all, Saturday the
  // 10th for head 1, the 15th for all but head 1.
  AttendanceDays() {
    Run("INSERT INTO ATT_WEEKLY (ATTHEADID, WEEKID, FIRSTHALF, SECONDHALF) VALUES (1, 1, 1, 1), (1, 7, 0, "
        "1); "
        "INSERT INTO ATT_HOLIDAY (HOLIDAYID, HOLIDAYDATE, ATTHEADID) VALUES (1, '14/Apr/2010', NULL), "
        "(2, '11/Apr/2010', NULL), (3, '10/Apr/2010', 1), (4, '15/Apr/2010', NULL), (5, '16/Apr/2010', 2); "
        "INSERT INTO ATT_HOLEX (HOLIDAYID, ATTHEADID) VALUES (4, 1)");
  }
};

TEST_F(AttendanceDays, HolidaysOfEverySource) {
  const std::tuple<const char*, const char*, const char*, double, double, double> cases[] = {
      // 4 Sundays and 4 halves; 10, 11 and 14; the 10th is topped up by a half, the 11th counts once.
      {"pattern", "", "", 6, 3, 7.5},
      {"leave on a Sunday", kLeave, "(17, '04/Apr/2010', 4, 1, 1)", 5, 3, 6.5},
      {"leave on a Sunday morning", kLeave, "(17, '04/Apr/2010', 4, 1, 0)", 5.5, 3, 7},
      {"leave on a Saturday morning that is worked", kLeave, "(17, '03/Apr/2010', 4, 1, 0)", 6, 3, 7.5},
      {"leave on a free Saturday afternoon", kLeave, "(17, '03/Apr/2010', 4, 0, 1)", 5.5, 3, 7},
      {"two kinds on a Sunday", kLeave, "(17, '04/Apr/2010', 4, 1, 0), (17, '04/Apr/2010', 1, 0, 1)", 5, 3,
       6.5},
      {"what is no leave", kLeave, "(17, '04/Apr/2010', 8, 1, 1)", 6, 3, 7.5},
      {"another's leave", kLeave, "(18, '04/Apr/2010', 4, 1, 1)", 6, 3, 7.5},
      {"leave on a holiday", kLeave, "(17, '14/Apr/2010', 4, 1, 0)", 6, 2, 6.5},
      {"of the employee", kRotation, "(17, 0, '01/Apr/2010', 1, 1), (17, 0, '08/Apr/2010', 0, 1)", 1.5, 3,
       4.5},
      {"on a holiday", kRotation, "(17, 0, '14/Apr/2010', 1, 0)", 0.5, 3, 3},
      {"of the head", kRotation, "(0, 1, '01/Apr/2010', 1, 1), (0, 0, '02/Apr/2010', 1, 1)", 1, 3, 4},
      {"of all", kRotation, "(0, 0, '01/Apr/2010', 1, 0), (0, 2, '02/Apr/2010', 1, 1)", 0.5, 3, 3.5},
      {"of another month", kRotation, "(17, 0, '01/May/2010', 1, 1)", 6, 3, 7.5},
      {"on leave", "",
       "INSERT INTO ATT_WKLYROT (EMPID, ATTHEADID, WEEKDATE, FIRSTHALFYN, SECONDHALFYN) "
       "VALUES (17, 0, '01/Apr/2010', 1, 1), (0, 1, '02/Apr/2010', 0, 1); "
       "INSERT INTO ATT_DETAIL (EMPID, LEVDATE, LEVID, FIRSTHALFYN, SECONDHALFYN) "
       "VALUES (17, '01/Apr/2010', 4, 1, 1)",
       0.5, 3, 3.5},
  };
  Office office(company.ConnectionString());
  clsNODNDP days(office.session);
  for (const auto& [what, table, rows, weekly, general, both] : cases) {
    SCOPED_TRACE(std::string(table) + what);
    Run(std::string(table) + rows);
    const auto count = [&](DayKind kind) { return days.FnDblGetHoliday(1, MonthOf("Apr/2010"), kind, 17); };
    EXPECT_DOUBLE_EQ(count(DayKind::Weekly), weekly);
    EXPECT_DOUBLE_EQ(count(DayKind::General), general);
    EXPECT_DOUBLE_EQ(count(DayKind::Both), both);
    Run("DELETE FROM ATT_WKLYROT; DELETE FROM ATT_DETAIL");
  }
  EXPECT_DOUBLE_EQ(days.FnDblGetHoliday(0, MonthOf("Apr/2010"), DayKind::General, 17), 0)
      << "no head, no holidays";
  EXPECT_DOUBLE_EQ(days.FnDblGetHoliday(2, MonthOf("Apr/2010"), DayKind::General, 17), 4)
      << "11, 14, 15 and 16";
}

TEST_F(AttendanceDays, CountsOfAMonth) {
  Run(std::string(kLeave) + R"((17, '06/Apr/2010', 4, 1, 0), (17, '07/Apr/2010', 1, 1, 1),
        (17, '08/Apr/2010', 2, 1, 1), (17, '09/May/2010', 1, 1, 1);
      INSERT INTO ATT_MONTH (ATTSLNO, EMPID, EMPDETID, MONTHYEAR) VALUES (1, 17, 5, 24124), (2, 17, 6, 24124);
      INSERT INTO ATT_MONTHLEV (ATTSLNO, LEVID, LEVVALUE) VALUES (1, 4, 2.5), (1, 1, 1), (2, 4, 4);
      INSERT INTO SLC_ATTHEADNOD (ATTHEADID, MONTHYEAR, NOD) VALUES (1, 24124, 26))");
  const std::tuple<const char*, Counts> cases[] = {
      {"NODFORCALC = 2", {30, 29, 28.5}},  // a day without pay; that and half a day of CL, TR passed over
      {"NODFORCALC = 3", {26, 25, 24.5}},
      {"NODFORCALC = 4", {22.5, 21.5, 13.5}},            // 22.5 less 1.5 and less 7.5 again
      {"NODFORCALC = 6", {24, 23, 19.5}},                // 24 less 1.5, less 3 general ones
      {"NODFORCALC = 2, ATTNTYPE = 4", {30, 29, 26.5}},  // 1; 1 and 2.5
      {"NODFORCALC = 2, ATTNTIGHTYN = 0", {30, 29, 29}},
      {"NODFORCALC = NULL, ATTNTIGHTYN = NULL, ATTNTYPE = NULL", {30, 29, 28.5}},
  };
  Office office(company.ConnectionString());
  clsNODNDP days(office.session);
  const DayRequest april{17, 5, 24124, 1, MonthOf("Apr/2010")};
  for (const auto& [head, expected] : cases) {
    SCOPED_TRACE(head);
    Run("UPDATE MAS_ATTHEAD SET ATTNTYPE = 2, ATTNTIGHTYN = 1; UPDATE MAS_ATTHEAD SET " + std::string(head));
    ExpectCounts(days.SetNODNDP(april), expected);
    EXPECT_DOUBLE_EQ(days.FnDblNODLimit(1, 24124), expected.calendar);
  }
  EXPECT_DOUBLE_EQ(days.FnDblGetLeaveMnthly(17, 0, 24124, LeaveSelection::NotPresent), 7.5)
      << "both detail rows";
}

TEST_F(AttendanceDays, HeadOrMonthThatIsNotThere) {
  Office office(company.ConnectionString());
  clsNODNDP days(office.session);
  ExpectCounts(days.SetNODNDP({17, 5, 24124, 99, MonthOf("Apr/2010")}), {30, 30, 30});
  EXPECT_EQ(days.FnStrGetMonthStartDate(24124), "01/Apr/2010");
  EXPECT_EQ(days.FnStrGetMonthEndDate(24122), "28/Feb/2010");
  Run("UPDATE MAS_OPTSETFEATURE SET CALCINMIDYN = 1; "
      "INSERT INTO MAS_MONTHYEAR (MONTHYEAR, CALCSTARTDATE, CALCENDDATE) VALUES (24124, '26/Mar/2010', "
      "'25/Apr/2010')");
  LoadOptionSet(office.session);
  EXPECT_EQ(days.FnStrGetMonthStartDate(24124), "26/Mar/2010");
  EXPECT_EQ(days.FnStrGetMonthEndDate(24124), "25/Apr/2010");
  EXPECT_EQ(days.FnStrGetMonthEndDate(24125), "31/May/2010") << "a month that the table does not have";
}

}  // namespace
}  // namespace ktl::test
