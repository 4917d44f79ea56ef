#include "frame/doors.h"

#include <gtest/gtest.h>

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
  const TextBox* asked = nullptr;
  session.doors.month.LeadTo([&](Session&, TextBox& for_) {
    asked = &for_;
    return std::make_unique<Screen>("frmSelMonth");
  });
  EXPECT_TRUE(session.doors.month.IsThere());
  session.doors.month(box);
  EXPECT_EQ(asked, &box);
  EXPECT_EQ(desk.ShownScreens(), std::vector<std::string>{"frmSelMonth"});

  long month = 0;
  session.doors.monthView.LeadTo([&](Session&, const MonthViewRequest& request) {
    month = request.monthYear;
    return std::make_unique<Screen>("modEMIEmp");
  });
  session.doors.monthView({.employee = 17, .monthYear = 24121});
  EXPECT_EQ(month, 24121);
}

TEST_F(DoorsTest, AScreenThatIsNotThereIsNamed) {
  TextBox box{opener, "txtDate"};
  session.title = "Loans";
  session.doors.calendar(box);
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
