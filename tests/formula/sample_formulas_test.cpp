#include <unistd.h>

#include <filesystem>

#include "company/company.h"
#include "company/company_error.h"
#include "company/formula_report.h"
#include "formula_fixture.h"

namespace ktl::test {
namespace {

// The formulas of the sample company, for its first employee in September 2026.
class SampleFormulas : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    file_ = std::filesystem::temp_directory_path() / ("ktl-formulas-" + std::to_string(::getpid()) + ".kldb");
    CompanyOptions options;
    options.file = file_;
    options.force = true;
    CreateCompany(options);
  }
  static void TearDownTestSuite() { std::filesystem::remove(file_); }

  // -1 without a detail row of that month.
  double Amount(long formula, long employee, const char* month) {
    const auto detail = DetailRowOfMonth(office.session, employee, Month(month));
    if (!detail) return -1;
    const DayRange days = MonthOf(month);
    return clsEvalFormula(office.session)
        .FnDblEvalFormula(formula, employee, *detail, Month(month), days.first, days.last);
  }

  Office office{"Provider=SQLite;Data Source=" + file_.string() + ";"};

 private:
  static inline std::filesystem::path file_;
};

TEST_F(SampleFormulas, GiveTheAmountsWorkedOutByHand) {
  constexpr double kAmounts[] = {40000, 4000,  2400, 5000, 100,  2500, 200,   8000,  501,
                                 1800,  20000, 2,    200,  1000, 900,  20000, 1425,  150,
                                 2500,  70,    80,   0,    0,    0,    0,     24321, 40000};
  long id = 0;
  for (const double amount : kAmounts) EXPECT_DOUBLE_EQ(Amount(++id, 1, "Sep/2026"), amount) << id;
  EXPECT_TRUE(office.desk.Boxes().empty());
}

TEST_F(SampleFormulas, OfEmployeesWithSomethingMissing) {
  const std::tuple<long, long, const char*, double, bool> cases[] = {
      {1, 22, "Sep/2026", 0, false},      // no salary rate
      {1, 45, "Mar/2026", -1, false},     // no detail row yet
      {5, 46, "Sep/2026", 0, true},       // no extended details
      {10, 33, "May/2026", 1800, false},  // in the fund, and later not
      {10, 33, "Sep/2026", 0, false},
      {12, 33, "Apr/2026", 1, false},
      {12, 33, "Mar/2026", 2, false},
      {16, 19, "May/2026", 20000.0 / 31 * 17, false}};  // joined on the 15th
  for (const auto& [formula, employee, month, amount, box] : cases) {
    EXPECT_NEAR(Amount(formula, employee, month), amount, 1e-9) << formula << " of " << employee;
    EXPECT_EQ(office.desk.TakeBoxes().size(), box ? 1U : 0U) << formula << " of " << employee;
  }
}

TEST_F(SampleFormulas, ReportTellsWhyAnAmountIsWhatItIs) {
  const FormulaRequest request{.empId = 1, .empDetId = 1, .monthYear = 24321, .period = MonthOf("Sep/2026")};
  const std::tuple<long, const char*> cases[] = {
      {18,
       "employee 1, detail row 1, Sep/2026: 01/Sep/2026 to 30/Sep/2026\n"
       "formula 18: Leave{CL} * 100\n"
       "token: Leave{CL} = 1.5  (leave taken)\n"
       "evaluated: 1.5 * 100\nvalue: 150\namount: 150\n"},
      {22,
       "employee 1, detail row 1, Sep/2026: 01/Sep/2026 to 30/Sep/2026\n"
       "formula 22: (AdjHours) * 20\n"
       "not replaced: (AdjHours)\n"
       "evaluated: (ADJHOURS) * 20\nvalue: ERROR: Variable not defined 'ADJHOURS'\namount: 0\n"},
  };
  for (const auto& [formula, lines] : cases) {
    FormulaRequest asked = request;
    asked.formulaId = formula;
    EXPECT_EQ(FormulaReport(office.session, asked), lines);
  }
}

TEST_F(SampleFormulas, OfSomebodyOrAMonthThatIsNotThere) {
  const std::tuple<long, const char*, const char*> cases[] = {
      {99, "Sep/2026", "There is no employee 99."},
      {45, "Mar/2026", "Employee 45 has no detail row up to Mar/2026."},
      {1, "Smarch", "\"Smarch\" is no month; one looks like Apr/2026."}};
  for (const auto& [employee, month, text] : cases) {
    try {
      DayRequestOf(office.session, employee, month);
      ADD_FAILURE() << text;
    } catch (const CompanyError& error) {
      EXPECT_STREQ(error.what(), text);
    }
  }
  const DayRequest asked = DayRequestOf(office.session, 21, "9/2026");
  EXPECT_EQ(asked.monthYear, 24321);
  EXPECT_EQ(asked.period, MonthOf("Sep/2026"));
  EXPECT_EQ(Value(asked.attHeadId),
            office.session.data.FnVarGetDbValue("SELECT ATTHEADID FROM MAS_EMPLOYEEDET WHERE EMPID = 21"));
}

TEST_F(SampleFormulas, DaysOfBothCountsStandBesideEachOther) {
  // Head 1: the 4 Sundays by attendance, and the second and fourth Saturday by advanced leave; one holiday.
  EXPECT_EQ(DaysReport(office.session, {1, 1, 24321, 1, MonthOf("Sep/2026")}),
            "employee 1, detail row 1, Sep/2026: 01/Sep/2026 to 30/Sep/2026\n"
            "attendance head 1 General: Attendance - Daily, NODFORCALC 2\n"
            "                          attendance  advanced leave\n"
            "calendar days                     30              30\n"
            "pay days                          30              30\n"
            "present days                    28.5            28.5\n"
            "weekly holidays                    4               6\n"
            "general holidays                   1               1\n"
            "leave                            1.5             1.5\n"
            "leave without pay                  0               0\n"
            "weekly holidays on: 6,12,13,20,26,27\n"
            "general holidays on: 14\n");
}

}  // namespace
}  // namespace ktl::test
