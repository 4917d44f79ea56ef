#include "frame/doors.h"

#include <gtest/gtest.h>

#include "frame/pickers.h"
#include "screen/screen.h"
#include "support/frame_fixture.h"

namespace ktl {
namespace {

class DoorsTest : public FrameFixture {
 protected:
  Screen opener{"modOpener"};
};

TEST_F(DoorsTest, ADoorHandsItsArgumentsToTheScreen) {
  TextBox box{opener, "txtMonth"};
  const Control* asked = nullptr;
  session.doors.month.LeadTo([&](Session&, const PickerField& field) {
    asked = field.control;
    return std::make_unique<Screen>("frmSelMonth");
  });
  EXPECT_TRUE(session.doors.month.IsThere());
  session.doors.month(FieldOf(box));
  EXPECT_EQ(asked, &box);
  EXPECT_EQ(desk.ShownScreens(), std::vector<std::string>{"frmSelMonth"});

  std::string month;
  session.doors.monthView.LeadTo([&](Session&, const MonthViewRequest& request) {
    month = request.month;
    return std::make_unique<Screen>("modEMIEmp");
  });
  session.doors.monthView({.employee = 17, .month = "Jan/2010"});
  EXPECT_EQ(month, "Jan/2010");
}

TEST_F(DoorsTest, AScreenThatIsNotThereIsNamed) {
  TextBox box{opener, "txtDate"};
  session.title = "Loans";
  session.doors.calendar(FieldOf(box));
  session.screens.Show(session, "modSalSIAdj");
  EXPECT_EQ(desk.TakeLines(),
            "Information | Loans | The calendar is not part of this build yet.\n"
            "Information | Loans | The deduction preference is not part of this build yet.");
}

TEST_F(DoorsTest, ThePlaceOnTopGoesBackToTheOpener) {
  session.ActiveForm = &opener;
  for (const bool taken : {true, false}) {
    Screen child{"modChild"};
    Screen other{"modOther"};
    desk.WillWorkOn([&](Screen& screen) { session.ActiveForm = taken ? &screen : &other; });
    ShowScreen(session, child);
    EXPECT_EQ(session.ActiveForm, taken ? &opener : &other);
  }
}

}  // namespace
}  // namespace ktl
