#include <gtest/gtest.h>

#include <tuple>

#include "common/sql_text.h"
#include "frame/employee_number.h"
#include "frame/fin_years.h"
#include "support/frame_fixture.h"

namespace ktl {
namespace {

class SharedFacts : public FrameFixture {
 protected:
  SharedFacts() { Connect(); }
};

TEST_F(SharedFacts, PeopleAreToldApartByTheCompanysNumbering) {
  session.Cn.Execute("INSERT INTO MAS_EMPLOYEE (EMPID, EMPNAME, REFNO) VALUES (17, 'Meera', 'R-9')");
  session.options.EMPIDCAP = "Token";
  session.options.REFNOCAP = "Card";
  const std::tuple<bool, const char*, const char*, const char*> cases[] = {{false, "EMPID", "Token", "17"},
                                                                           {true, "REFNO", "Card", "R-9"}};
  for (const auto& [byReference, column, caption, number] : cases) {
    session.options.EMPREFNOYN = byReference;
    EXPECT_STREQ(NumberingOf(session).column, column);
    EXPECT_EQ(NumberingOf(session).caption, caption);
    EXPECT_EQ(ReadEmployeeHeader(session, 17).number, number);
    EXPECT_EQ(ReadEmployeeHeader(session, 17).name, "Meera");
  }
  EXPECT_EQ(ReadEmployeeHeader(session, 18).name, "");
}

// Month 24315 is Mar/2026, 24312 is Dec/2025: December's whole division by 12 is one too high.
TEST_F(SharedFacts, FinancialYearsComeNewestFirst) {
  session.Cn.Execute("DELETE FROM MAS_MONTHYEAR");
  for (const int month : {24303, 24312, 24315, 24316}) {
    session.Cn.Execute(session.Sql("INSERT INTO MAS_MONTHYEAR (MONTHYEAR) VALUES ({})", month));
  }
  const auto years = [this] {
    std::string texts;
    for (const ListRow& row : ReadFinYears(session)) texts += row.text + ";";
    return texts;
  };
  EXPECT_EQ(years(), "2026 - 2027;2025 - 2026;2024 - 2025;");
  session.TdsMar2Feb = true;  // March begins the year
  EXPECT_EQ(years(), "2026 - 2027;2025 - 2026;");
  EXPECT_EQ(FinYearOf("2025 - 2026"), 2025);
  EXPECT_EQ(FinYearOf(""), 0);
}

TEST_F(SharedFacts, ASearchedTextFindsItselfAlone) {
  for (const char* name : {"50% off", "50x off", "A_B", "AxB", "[x]", "x", "O'Brien"}) {
    session.Cn.Execute(session.Sql(
        "INSERT INTO MAS_EMPLOYEE (EMPID, EMPNAME) SELECT ISNULL(MAX(EMPID), 0) + 1, '{}' FROM MAS_EMPLOYEE",
        name));
  }
  for (const char* searched : {"50%", "A_B", "[x]", "O'B"}) {
    const Statement like("SELECT COUNT(*) FROM MAS_EMPLOYEE WHERE EMPNAME LIKE '%" + LikePattern(searched) +
                         "%'");
    EXPECT_EQ(session.data.Long(like), 1) << searched;
  }
}

}  // namespace
}  // namespace ktl
