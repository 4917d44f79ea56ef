#include "frame/pickers.h"

#include "frame/frmKtlCalender.h"
#include "frame/frmSelMonth.h"
#include "support/frame_fixture.h"

namespace ktl {
namespace {

using Texts = std::vector<std::string>;

class Pickers : public FrameFixture {
 protected:
  Pickers() {
    Connect();
    Sql("DELETE FROM MAS_MONTHYEAR");
  }
  Screen opener{"modOpener"};
  TextBox box{opener, "txtMonth"};
};

TEST_F(Pickers, OnlyMonthsOfTheCompanyCanBeChosen) {
  company.Months(24292, 24303);  // Apr/2024 to Mar/2025
  box.SetText("as it was");
  frmSelMonth picker(session, FieldOf(box));
  picker.Load();
  EXPECT_EQ(picker.under, &box);
  EXPECT_EQ(picker.lstYear.rows.size(), 2u);
  EXPECT_EQ(picker.lstYear.rows.at(picker.lstYear.activeRow).text, "2025");
  const auto open = [&picker] {
    std::string names;
    for (const auto& label : picker.lblMonth)
      if (label->enabled) names += label->caption;
    return names;
  };
  EXPECT_EQ(open(), "JanFebMar");
  EXPECT_EQ(picker.Focus(), picker.lblMonth[0].get());
  EXPECT_THROW(Click(*picker.lblMonth[3]), PersonError);
  Pick(picker.lstYear, "2024");
  EXPECT_EQ(open(), "AprMayJunJulAugSepOctNovDec");
  EXPECT_EQ(box.Text(), "as it was");
  Click(*picker.lblMonth[3]);
  EXPECT_EQ(box.Text(), "Apr/2024");
  EXPECT_TRUE(picker.IsUnloaded());
  frmSelMonth left(session, FieldOf(box));
  left.Load();
  Click(left.lblClose);
  EXPECT_TRUE(left.IsUnloaded());
  EXPECT_EQ(box.Text(), "Apr/2024");
}

TEST_F(Pickers, WithoutAYearThereIsNothingToChoose) {
  ComboBox list{opener, "cmbMonth"};
  frmSelMonth picker(session, FieldOf(list));
  picker.Load();
  Click(*picker.lblMonth[3]);
  EXPECT_EQ(desk.TakeTexts(), Texts{"Please Select The year"});
  EXPECT_EQ(list.Text(), "");
  EXPECT_FALSE(picker.IsUnloaded());
}

TEST_F(Pickers, DaysStandUnderTheirWeekdays) {
  const struct {
    const char* stands;
    std::size_t first, days;  // the cell of the 1st, from Sunday on
    const char *year, *last;
  } cases[] = {{"12/02/2024", 4, 29, "2024", "2034"},
               {"01/02/2100", 1, 29, "2100", "2110"},  // every fourth year is a leap year
               {"abc", 2, 30, "2026", "2036"},         // today is in Sep/2026
               {"31/12/9999", 3, 31, "9999", "9999"},
               {"03/05/2026", 5, 31, "2026", "2036"}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.stands);
    box.SetText(each.stands);
    frmKtlCalender calendar(session, FieldOf(box));
    calendar.Load();
    for (std::size_t cell = 0; cell < 42; ++cell) {
      const bool day = cell >= each.first && cell < each.first + each.days;
      EXPECT_EQ(calendar.lblDate[cell]->caption, day ? std::to_string(cell - each.first + 1) : "");
      EXPECT_EQ(calendar.lblDate[cell]->enabled, day);
    }
    EXPECT_EQ(calendar.cmbYear.Text(), each.year);
    EXPECT_EQ(calendar.cmbYear.Rows().back().text, each.last);
  }
  frmKtlCalender calendar(session, FieldOf(box));
  calendar.Load();
  EXPECT_EQ(calendar.cmbYear.Rows().front().text, "2016");
  Pick(calendar.cmbMonth, "February");
  Pick(calendar.cmbYear, "2028");
  EXPECT_EQ(calendar.lblDate[30]->caption, "29");
  Click(calendar.lbltoady);
  EXPECT_EQ(calendar.cmbMonth.Text() + calendar.cmbYear.Text(), "September2026");
  EXPECT_EQ(box.Text(), "03/05/2026");
  Click(*calendar.lblDate[10]);
  EXPECT_EQ(box.Text(), "09/09/2026");
  EXPECT_TRUE(calendar.IsUnloaded());
}

TEST_F(Pickers, ALockedFieldAsksForNothing) {
  AskForDate(session, box);
  box.locked = true;
  DblClick(box);
  EXPECT_TRUE(desk.TakeTexts().empty());
  box.locked = false;
  DblClick(box);
  EXPECT_EQ(desk.TakeTexts(), Texts{"The calendar is not part of this build yet."});
}

}  // namespace
}  // namespace ktl
