#include "frame/ported_stat.h"

#include <gtest/gtest.h>

#include <set>
#include <tuple>

#include "database/recordset.h"
#include "support/frame_fixture.h"

namespace ktl {
namespace {

// Month-years of the cases: April 2009 is 24112, March 2010 24123, January 2011 24133.
class PortedStatTest : public FrameFixture {
 protected:
  PortedStatTest() {
    Connect();
    MakeLocalStore({2010, 2011, 2012});                                     // financial years 2009 to 2011
    Fill("MAS_MONTHYEAR", "(MONTHYEAR) VALUES (24112), (24123), (24133)");  // 2009 and 2010
    Fill("MAS_EMPLOYEE",
         "(EMPID, EMPNAME, TDSYN) VALUES (1, 'Asha Rane', 1), (2, 'Vikram Desai', 1), (3, 'Leela Nair', 0)");
  }

  // "EMPID/YEAR:COLUMN" of every flag that is 1; all nineteen are written "ALL".
  std::set<std::string> Marks() {
    std::set<std::string> marks;
    Recordset rows(session.Cn, "SELECT * FROM INC_PORTEDSTAT");
    for (; !rows.Eof(); rows.MoveNext()) {
      const std::string key = rows["EMPID"].ToText() + "/" + rows["FINYEAR"].ToText() + ":";
      std::set<std::string> columns;
      for (const std::string& field : rows.Fields()) {
        if (field.ends_with("YN") && rows[field].NumberOr0() == 1) columns.insert(key + field);
      }
      if (columns.size() == 19) columns = {key + "ALL"};
      marks.merge(columns);
    }
    return marks;
  }
};

using Marked = std::set<std::string>;

TEST_F(PortedStatTest, EachCodeMarksItsFlags) {
  const Marked allOfOne = {"1/2009:ALL", "1/2010:ALL"};
  const Marked allOfBoth = {"1/2009:ALL", "1/2010:ALL", "2/2009:ALL", "2/2010:ALL"};
  // code, from month, date, to month
  const std::tuple<int, long, const char*, long, Marked> cases[] = {
      {0, 0, "", 0, {"0/2009:ALL", "0/2010:ALL"}},
      {1, 24123, "", 0, {"1/2009:MONTH12YN"}},
      {1, 24123, "15/Apr/2010", 0, {"1/2010:MONTH01YN"}},
      {7, 24132, "", 0, {"1/2010:MONTH09YN"}},
      {15, 24133, "", 0, {"1/2010:MONTH10YN", "1/2010:RMBYN"}},
      {2, 0, "", 0, allOfOne},
      {4, 24112, "", 24112, {"1/2009:ALL", "2/2009:ALL"}},
      {4, 24112, "", 36066, allOfBoth},
      {5, 24112, "", 24112, allOfBoth},
      {6, 24133, "", 24133, {"1/2010:RMBYN", "2/2010:RMBYN"}},
      {6, 0, "", 0, {"1/2009:RMBYN", "1/2010:RMBYN", "2/2009:RMBYN", "2/2010:RMBYN"}},
      {8, 24133, "", 0, {"1/2010:ARREARYN"}},
      {9, 24133, "", 0, {"1/2010:ADDPAYYN"}},
      {10, 24133, "", 0, {"1/2010:BONEXGYN"}},
      {11, 24133, "", 0, {"1/2010:ATTENCASHYN"}},
      {12, 24133, "", 24133, {"1/2010:INSOTHERYN", "2/2010:INSOTHERYN"}},
      {13, 24133, "", 24133, {"1/2010:INSURANCEYN", "2/2010:INSURANCEYN"}},
      {14, 0, "31/03/2011", 0, {"1/2010:INSOTHERYN"}},
      {16, 24133, "", 24133, {}},
  };
  for (const auto& [code, fromMonth, date, toMonth, marked] : cases) {
    Sql("DELETE FROM INC_PORTEDSTAT");
    UpdateIncPortedStat(session, code, 1, fromMonth, date, toMonth, "EMPID < 9");
    EXPECT_EQ(Marks(), marked) << "code " << code << " from " << fromMonth;
  }
  Sql("INSERT INTO INC_PORTEDSTAT (EMPID, FINYEAR, RMBYN) VALUES (1, 2009, 1), (2, 2009, 1)");
  UpdateIncPortedStat(session, 3, 1, 0, "", 0);
  EXPECT_EQ(Marks(), Marked{"2/2009:RMBYN"});
}

TEST_F(PortedStatTest, MarksStayBesideNewOnes) {
  UpdateIncPortedStat(session, 8, 1, 24133, "", 0);
  UpdateIncPortedStat(session, 9, 1, 24133, "", 0);
  EXPECT_EQ(Marks(), (Marked{"1/2010:ARREARYN", "1/2010:ADDPAYYN"}));
  EXPECT_EQ(Number("SELECT COUNT(*) FROM INC_PORTEDSTAT"), 1);
}

TEST_F(PortedStatTest, YearsThatBeginInMarch) {
  Sql("UPDATE MAS_OPTSET SET TDSMAR2FEB = 1");
  const std::pair<long, const char*> cases[] = {
      {24123, "1/2010:MONTH01YN"}, {24122, "1/2009:MONTH12YN"}, {24132, "1/2010:MONTH10YN"}};
  for (const auto& [month, mark] : cases) {
    Sql("DELETE FROM INC_PORTEDSTAT");
    UpdateIncPortedStat(session, 1, 1, month, "", 0);
    EXPECT_EQ(Marks(), Marked{mark});
  }
}

TEST_F(PortedStatTest, YearsAreClampedToTheTaxSettings) {
  const std::pair<std::vector<int>, Marked> cases[] = {
      {{2011, 2012}, {"0/2010:ALL"}},
      {{2008, 2009, 2010}, {"0/2009:ALL"}},
      {{2012}, {}},  // every year lies below
      {{2009}, {}},  // every year lies above
  };
  for (const auto& [assessmentYears, marked] : cases) {
    Sql("DELETE FROM INC_PORTEDSTAT");
    MakeLocalStore(assessmentYears);
    UpdateIncPortedStat(session, 0, 7, 0, "", 0);
    EXPECT_EQ(Marks(), marked) << assessmentYears.front();
  }
}

TEST_F(PortedStatTest, WithoutALocalStoreNothingIsMarked) {
  machine.folder.path = "/nowhere";
  EXPECT_THROW(UpdateIncPortedStat(session, 0, 0, 0, "", 0), DatabaseError);
  EXPECT_TRUE(Marks().empty());
  EXPECT_FALSE(session.Cn.InTransaction());
}

}  // namespace
}  // namespace ktl
