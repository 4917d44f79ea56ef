#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <numeric>
#include <optional>
#include <random>

#include "company/company.h"
#include "formula/day_count_run.h"
#include "formula/formula_run.h"
#include "formula_fixture.h"
#include "support/temporary_folder.h"

namespace ktl::test {
namespace {

// Every token, each with a weight of its own so that none can hide behind another.
constexpr const char* kFormulas[] = {
    "Component{BASIC} + Component{HRA} / 3 + Component{PF} / 7 + (GrossSalary) * 10 + (SalaryMonth)",
    "CV{BASIC} + CV{HRA} / 3 + CV{PF} * 1000",
    R"(Asc(EmpDet{Department} & " ") + Asc(EmpDet{Branch} & " ") * 100 + Asc(EmpDet{Attendance} & " ") * 10000)",
    R"(Asc(EmpDet{Designation} & " ") * 1000 + Asc(StrReverse(EmpDet{Cost Centre} & " ")))",
    R"(Asc(EmpCustDet{Quarter} & " ") * 1000 + Len(EmpCustDet{Vehicle No}))",
    "CustQry{OpenAdvances} * 1000 + CustQry{All}",
    R"(KLDayDiff(CDate("01/Jan/1990"), Emp{DOJ}) + KLDayDiff(Emp{SALCALCFROM}, Emp{DOL}) * 2)",
    R"(KLYearDiff(Emp{DORes}, Emp{DOConf}) * 3 + Asc(Emp{SEX} & " ") + KLYearDiff(Emp{DOB}, Emp{DOL}))",
    R"(KLIF((PFYN) = "Y", 1, 0) + KLIF((RESPFYN) = "Y", 10, 0) + KLIF((ESIYN) = "Y", 100, 0))",
    R"(UNIT{NIGHT SHIFT} * 10 + OT1UNIT + OT2UNIT + Asc((PTGroup) & " ") * 1000)",
    "Leave{CL} + Leave{LOP} * 100 + Leave{SL} * 10000 + Leave{PL} / 100 + Leave{ML} / 10000",
    "ReimAllot{MEDICAL} + ReimClaim{MEDICAL} / 3 + ReimUnclaim{FUEL} / 7 + ReimClaim{FUEL} / 11",
    "(GenHoliday) + (WeekHoliday) * 100 + (TotalGenHoliday) / 100 + (TotalWeekHoliday) / 1000 + 0 * Days{Pay "
    "Days}",
    "Days{Salary Calendar Days} + Days{Pay Days} * 100 + Days{Present Days} * 10000 + (AdjHours)",
    "Days{Total Pay Days} / 100 + Days{Total Present Days}"};
constexpr long kFirstFormula = 900;

// A sample company, shaken by a seed: attendance heads of all kinds, leave, holidays and rotation anywhere,
// people who join, leave or are moved inside the month, and amounts that cannot be read.
class Runs : public testing::TestWithParam<unsigned> {
 protected:
  Runs() : random_(GetParam()) {
    CompanyOptions options;
    options.file = folder_.path() / "run.kldb";
    options.sample.seed = GetParam();
    CreateCompany(options);
    office.emplace("Provider=SQLite;Data Source=" + options.file.string() + ";");
    for (std::size_t i = 0; i < std::size(kFormulas); ++i)
      Try("INSERT INTO MAS_FORMULA (FORMULAID, FORMULA) VALUES ({}, '{}')", kFirstFormula + i, kFormulas[i]);
    Try("INSERT INTO MAS_FORMULACUSTOM (MODULEID, FNAME, FQUERY) VALUES "
        "(1, 'All', 'SELECT COUNT(*) FROM INS_ADVLOAN'), (1, 'Fails', 'SELECT NOTHING FROM NOWHERE'), "
        "(1, 'Fails for many', 'SELECT 1e308 * ($EMPID$ % 3)')");
    ShakeHeads();
    for (int i = 0; i < 150; ++i) ShakeAttendance();
    for (int i = 0; i < 12; ++i) ShakePerson();
    LoadOptionSet(office->session);
  }

  int Up(int highest) { return std::uniform_int_distribution<int>(0, highest)(random_); }
  int Person() { return 1 + Up(59); }
  std::string DayOf(int days = 29) { return IsoDay(period_.first.AddDays(Up(days))); }
  // Some of it breaks a key: that row is left out.
  template <typename... Args>
  void Try(const char* sql, const Args&... args) {
    office->session.data.ExecuteSql(fmt::format(fmt::runtime(sql), args...));
  }

  void ShakeHeads() {
    for (int head = 1; head <= 6; ++head) {
      Try("UPDATE MAS_ATTHEAD SET NODFORCALC = {}, ATTNTYPE = {}, ATTNTIGHTYN = {} WHERE ATTHEADID = {}",
          Up(7), Up(2) == 0 ? 4 : 2, Up(3) == 0 ? 0 : 1, head);
      Try("UPDATE ATT_OPTSETTINGS SET HOLPRIORITY = {}, COCWYN = {} WHERE ATTHEADID = {}", Up(1), Up(1),
          head);
      Try("INSERT INTO ATT_WEEKLY (ATTHEADID, WEEKID, FIRSTHALF, SECONDHALF) VALUES ({}, {}, 1, {})", head,
          1 + Up(6), Up(1));
      Try("INSERT INTO ATT_HOLIDAY (HOLIDAYID, HOLIDAYDATE, ATTHEADID, BRANCHID) VALUES ({}, '{}', {}, {})",
          500 + head, DayOf(), Up(1) == 0 ? "NULL" : std::to_string(head), Up(3));
      Try("INSERT INTO ATT_HOLEX (HOLIDAYID, ATTHEADID) VALUES ({}, {})", 501 + Up(5), head);
      Try("INSERT INTO LEV_WEEKLYHLDBRANCH (WHID, BRANCHID, WEEKID, EFFFROM, FH2YN, SH2YN) VALUES ({}, {}, "
          "{}, 24300, "
          "1, {})",
          500 + head, 1 + Up(4), 1 + Up(6), Up(1));
    }
    if (Up(1) == 1) Try("UPDATE MAS_OPTSET SET BRGHEFROM = '{}'", DayOf());
    if (Up(1) == 1) Try("UPDATE MAS_OPTSETFEATURE SET CALCINMIDYN = 1");
    Try("UPDATE MAS_MONTHYEAR SET CALCSTARTDATE = '{}', CALCENDDATE = NULL WHERE MONTHYEAR = {}", DayOf(4),
        month_);
  }

  void ShakeAttendance() {
    const int person = Person();
    Try("INSERT INTO ATT_DETAIL (EMPID, LEVDATE, LEVID, FIRSTHALFYN, SECONDHALFYN) VALUES ({}, '{}', {}, {}, "
        "{})",
        person, DayOf(), 1 + Up(7), Up(1), Up(1));
    Try("INSERT INTO LEV_DETAILS (EMPID, EMPDETID, LEVID, LEAVEDATE, FIRSTHALFYN, SECONDHALFYN, TAKEN) "
        "SELECT EMPID, "
        "EMPDETID, {}, '{}', {}, {}, 1 FROM MAS_EMPLOYEEDET WHERE EMPID = {}",
        1 + Up(7), DayOf(), Up(1), Up(1), person);
    Try("INSERT INTO ATT_WKLYROT (EMPID, ATTHEADID, WEEKDATE, FIRSTHALFYN, SECONDHALFYN) VALUES ({}, {}, "
        "'{}', {}, {})",
        Up(3) == 0 ? 0 : person, Up(6), DayOf(), Up(1), Up(1));
    Try("INSERT INTO LEV_ADJUSTMENT (EMPID, LEVID, ATTHEADID, ASONDATE, TAKEN) VALUES ({}, {}, {}, '{}', {})",
        person, 1 + Up(7), 1 + Up(5), DayOf(), Up(9));
    Try("INSERT INTO RMB_CLAIM (EMPID, RMBID, CLAIMDATE, SALARYMONTH, CLAIMAMT) VALUES ({}, {}, '{}', 0, {})",
        person, 1 + Up(2), DayOf(), Up(900));
    Try("INSERT INTO ATT_MONTH (ATTSLNO, EMPID, EMPDETID, MONTHYEAR) SELECT 90000 + EMPDETID, EMPID, "
        "EMPDETID, {} FROM "
        "MAS_EMPLOYEEDET WHERE EMPID = {}",
        month_, person);
    Try("INSERT INTO ATT_MONTHLEV (ATTSLNO, LEVID, LEVVALUE) SELECT ATTSLNO, {}, {} FROM ATT_MONTH WHERE "
        "EMPID = {}",
        1 + Up(7), Up(5) / 2.0, person);
  }

  void ShakePerson() {
    Try("UPDATE MAS_EMPLOYEE SET SALCALCFROM = '{}' WHERE EMPID = {}", DayOf(), Person());
    Try("UPDATE MAS_EMPLOYEE SET DOL = '{}' WHERE EMPID = {}", DayOf(), Person());
    Try("UPDATE MAS_EMPLOYEEDET SET EFFTODATE = '{}' WHERE EMPID = {}", DayOf(), Person());
    Try("INSERT INTO MAS_EMPLOYEEDET (EMPDETID, EMPID, EFFFROMDATE, BRANCHID, ATTHEADID, STRUCTID) SELECT "
        "900 + "
        "EMPDETID, EMPID, EFFFROMDATE, {}, {}, 1 FROM MAS_EMPLOYEEDET WHERE EMPID = {}",
        1 + Up(4), 1 + Up(5), Person());
    Try("UPDATE MAS_EMPLOYEEDET SET ATTHEADID = NULL WHERE EMPID = {}", Person());
    Try("UPDATE SLC_SALARYRATE_E SET ECOMP01 = 'much' WHERE EMPID = {}", Person());
    Try("DELETE FROM MAS_EMPLOYEEEXTDET WHERE EMPID = {}", Person());
    // Two of them are beyond all bounds together: their block cannot be read.
    if (Up(6) == 0)
      Try("INSERT INTO RMB_CLAIM (EMPID, RMBID, SALARYMONTH, CLAIMAMT) SELECT {}, 1, {}, 1.7E308 FROM "
          "ATT_DEFINITION",
          Person(), month_);
  }

  // Some of the people in any order, with one that is not there.
  std::vector<long> People() {
    std::vector<long> people(60);
    std::iota(people.begin(), people.end(), 1);
    std::shuffle(people.begin(), people.end(), random_);
    people.resize(40);
    people.insert(people.begin() + Up(20), 9999);
    return people;
  }

 private:
  TemporaryFolder folder_;

 protected:
  std::mt19937 random_;
  long month_ = GetParam() % 2 == 0 ? Month("Sep/2026") : Month("May/2025");
  DayRange period_ = GetParam() % 2 == 0 ? MonthOf("Sep/2026") : MonthOf("May/2025");
  std::optional<Office> office;
};

TEST_P(Runs, GiveTheAmountsAndBoxesOfEachEmployeeAlone) {
  Session& session = office->session;
  for (std::size_t i = 0; i < std::size(kFormulas); ++i) {
    const FormulaRequest request{
        .formulaId = kFirstFormula + static_cast<long>(i), .monthYear = month_, .period = period_};
    const std::vector<long> people = People();
    FormulaRun run(session, request, people);
    clsEvalFormula alone(session);
    int amounts = 0;
    for (const long employee : people) {
      SCOPED_TRACE(testing::Message() << kFormulas[i] << " of " << employee);
      const double amount = run.AmountOf(employee);
      const std::string boxes = office->desk.TakeLines();
      FormulaRequest own = request;
      own.empId = employee;
      own.empDetId = DetailRowOfMonth(session, employee, month_).value_or(0);
      EXPECT_EQ(amount, own.empDetId == 0 ? 0 : alone.FnDblEvalFormula(own));
      EXPECT_EQ(boxes, own.empDetId == 0 ? "" : office->desk.TakeLines());
      amounts += amount != 0 ? 1 : 0;
      // What such a run is for; a custom query sees it.
      Transaction written(session.Cn);
      Try("INSERT INTO INS_ADVLOAN (EMPID, SITYPE, SERIALNO, SINAME, ACTAMT) VALUES ({}, 1, {}, 'Run', {})",
          employee, 900 + i, amount);
      written.Commit();
    }
    EXPECT_GT(amounts, 3) << kFormulas[i];
  }
}

TEST_P(Runs, GiveTheDaysOfEachEmployeeAlone) {
  Session& session = office->session;
  std::vector<RunPerson> people;
  std::vector<DayRequest> requests;
  for (Recordset rows(session.Cn, "SELECT EMPID, EMPDETID, ATTHEADID FROM MAS_EMPLOYEEDET"); !rows.Eof();
       rows.MoveNext()) {
    people.push_back({rows[0].ToLong(), rows[1].ToLong()});
    requests.push_back({.empId = rows[0].ToLong(),
                        .empDetId = rows[1].ToLong(),
                        .monthYear = month_,
                        .attHeadId = Up(9) == 0 ? 1 + Up(5) : static_cast<long>(rows[2].NumberOr0()),
                        .period = Up(9) == 0 ? DayRange{period_.first.AddDays(Up(9)), period_.last} : period_,
                        .keepPayDays = Up(9) == 0,
                        .capToPeriod = Up(2) == 0});
  }
  people.resize(people.size() - 3);  // the last are no part of the run
  modAttSetting settings(session);
  clsNODNDP attendance(session);
  clsNODNDPCALC period(session, settings);
  DayCountRun attendanceRun(session, DayCountRun::Rules::Attendance, people);
  DayCountRun periodRun(session, DayCountRun::Rules::AdvancedLeave, people);
  for (const DayRequest& request : requests) {
    SCOPED_TRACE(testing::Message() << "detail row " << request.empDetId << " head " << request.attHeadId);
    EXPECT_EQ(attendanceRun.SetNODNDP(request), attendance.SetNODNDP(request));
    EXPECT_EQ(periodRun.SetNODNDP(request), period.SetNODNDP(request));
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, Runs, testing::Range(1U, 5U));

// More people than are read together; and no more statements than blocks of them need.
class LargeRun : public DayTest {};

TEST_F(LargeRun, GoesBlockByBlock) {
  constexpr int kPeople = 1200;
  std::vector<long> people;
  for (int employee = 1; employee <= kPeople; ++employee) {
    company.Execute(
        fmt::format("INSERT INTO MAS_EMPLOYEEDET (EMPDETID, EMPID, EFFFROMDATE, BRANCHID, ATTHEADID) "
                    "VALUES ({}, {}, '01/Apr/2008', 1, 1)",
                    5000 - employee, 1000 + employee));
    for (int day = 1; day <= employee % 5; ++day)
      company.Execute(
          fmt::format("{} ({}, '{}/Apr/2010', 7, 1, {})", kLeave, 1000 + employee, day, employee % 2));
    people.push_back(1000 + employee);
  }
  company.Row("MAS_FORMULA").With("FORMULAID", 4).With("FORMULA", "Days{Pay Days}");
  const std::string log = company.File().string() + ".log";
  Office office(company.ConnectionString());
  office.session.Cn.SetStatementLog(log);
  std::size_t told = 0;
  FormulaRun run(office.session, {.formulaId = 4, .monthYear = 24124, .period = MonthOf("Apr/2010")}, people,
                 [&](std::size_t reckoned) { EXPECT_EQ(reckoned, ++told); });
  run.AmountOf(1600);
  EXPECT_EQ(told, people.size());
  const auto expectAll = [&] {
    for (int employee = 1; employee <= kPeople; ++employee)
      ASSERT_EQ(run.AmountOf(1000 + employee), 30 - employee % 5 * (employee % 2 == 0 ? 0.5 : 1)) << employee;
  };
  expectAll();
  office.session.Cn.SetStatementLog("");
  expectAll();
  EXPECT_LT(std::ranges::count(ReadAll(log), '\n'), 60);
  std::filesystem::remove(log);
}

// It may read what the run itself has written for those before.
TEST_F(LargeRun, AsksACustomQueryAnewForEachEmployee) {
  for (int employee : {1001, 1002, 1003})
    company.Execute(fmt::format(
        "INSERT INTO MAS_EMPLOYEEDET (EMPDETID, EMPID, EFFFROMDATE, BRANCHID, ATTHEADID) VALUES ({}, {}, "
        "'01/Apr/2008', 1, 1)",
        employee, employee));
  company.Row("MAS_FORMULA").With("FORMULAID", 5).With("FORMULA", "CustQry{Given}");
  company.Execute(
      "INSERT INTO MAS_FORMULACUSTOM (MODULEID, FNAME, FQUERY) VALUES (1, 'Given', 'SELECT "
      "COUNT(*) FROM INS_ADVLOAN')");
  Office office(company.ConnectionString());
  FormulaRun run(office.session, {.formulaId = 5, .monthYear = 24124, .period = MonthOf("Apr/2010")},
                 {1001, 1002, 1003});
  for (int given = 0; given < 3; ++given) {
    EXPECT_EQ(run.Amount(1001 + given), given);
    company.Advance(1001 + given, 1, "Salary Advance", 100);
  }
}

}  // namespace
}  // namespace ktl::test
