#include <gtest/gtest.h>

#include "frame/handler_guard.h"
#include "frame/refusal.h"
#include "runtime/errors.h"
#include "screen/screen.h"
#include "support/frame_fixture.h"

namespace ktl {
namespace {

struct FailingScreen final : Screen {
  FailingScreen() : Screen("frmFailing") {}
  TextBox txtAmount{*this, "txtAmount"};

  void cmdSave_Click() { throw RuntimeError(13, "Type mismatch"); }
  void fpgList_Click(std::size_t row, std::size_t column) {
    sum = row + column;
    if (sum > 5) throw RuntimeError(9, "Subscript out of range");
  }
  std::size_t sum = 0;
};

class HandlersTest : public FrameFixture {
 protected:
  FailingScreen screen;
};

TEST_F(HandlersTest, AFailureIsToldInTheStyleOfTheScreen) {
  const HandlerGuard first(session, screen, ErrorStyle::NumberFirst);
  const HandlerGuard last(session, screen, ErrorStyle::DescriptionFirst, "Error");
  const Handler click = first(&FailingScreen::cmdSave_Click);
  session.title = "Loans";  // the title counts that stands when the box is shown
  click();
  last (&FailingScreen::cmdSave_Click)();
  const CellHandler cell = last(&FailingScreen::fpgList_Click);
  cell(2, 3);
  EXPECT_EQ(screen.sum, 5u);
  cell(3, 3);
  first([] { throw RuntimeError(5, "Invalid procedure call or argument"); })();
  EXPECT_EQ(desk.TakeLines(),
            "Critical | Loans | 13\tType mismatch\n"
            "Critical | Error | Type mismatch : 13\n"
            "Critical | Error | Subscript out of range : 9\n"
            "Critical | Loans | 5\tInvalid procedure call or argument");
}

TEST_F(HandlersTest, WhatIsNoFailureOfTheRunTimePasses) {
  const auto fail = [] { throw ProgramFailure("the end"); };
  EXPECT_THROW(RunGuarded(session, ErrorStyle::NumberFirst, "", fail), ProgramFailure);
  EXPECT_TRUE(desk.Boxes().empty());
}

TEST_F(HandlersTest, ARefusalShowsItsTextAndGivesTheFocus) {
  enum class Field { Amount, Elsewhere };
  const std::map<Field, Control*> controls = {{Field::Amount, &screen.txtAmount}};
  using Refused = Refusal<Field>;
  EXPECT_FALSE(Refuse(session, screen, Refused{"No such month.", Field::Elsewhere}, controls));
  EXPECT_EQ(screen.Focus(), nullptr);
  const Refused denied{"Locked.", Field::Amount, Icon::Exclamation, "Permission Denied"};
  EXPECT_FALSE(Refuse(session, screen, denied, controls));
  EXPECT_TRUE(screen.TakeFocusRequest());
  EXPECT_EQ(screen.Focus(), &screen.txtAmount);
  Refuse(session, screen, Refused{"", Field::Amount}, controls);  // a question answered with No
  EXPECT_TRUE(screen.TakeFocusRequest());
  EXPECT_EQ(desk.TakeLines(),
            "Information | KestrelLedger - Standing Instruction | No such month.\n"
            "Exclamation | Permission Denied | Locked.");
}

}  // namespace
}  // namespace ktl
