#include "frame/durable_desk.h"

#include <gtest/gtest.h>

#include "frame/handler_guard.h"
#include "support/company_fixture.h"
#include "support/frame_fixture.h"
#include "support/power_cut.h"

namespace ktl {
namespace {

// Notes what a power cut would leave at the moment when he is told something.
class Watcher final : public ScriptedDesk {
 public:
  explicit Watcher(const test::PowerCut& machine) : machine_(machine) {}
  Answer MsgBox(const MessageBox& box) override {
    leftWhenTold.push_back(machine_.EmployeesLeft());
    return ScriptedDesk::MsgBox(box);
  }
  void NoteSaved() override { leftWhenTold.push_back(machine_.EmployeesLeft()); }
  void TellWritten(const std::string&, const std::string&, const std::string&) override { NoteSaved(); }

  std::vector<int> leftWhenTold;

 private:
  const test::PowerCut& machine_;
};

TEST(DurableDesk, WhatIsToldIsOnTheDisk) {
  KTL_NEEDS_FILE();
  test::TestCompany company;
  const test::PowerCut machine(company.File());
  Watcher person(machine);
  DurableDesk desk(person, company.Cn());
  company.Employee(1);
  desk.Inform("Updated", "");
  company.Employee(2);
  desk.NoteSaved();
  company.Employee(3);
  desk.TellWritten("Written", "list.xlsx", "");
  company.Employee(4);
  desk.ShowError("The disk is full.", "");  // must be told even when the disk takes nothing
  EXPECT_EQ(person.leftWhenTold, (std::vector<int>{1, 2, 3, 3}));
}

TEST_F(FrameFixture, AHandlerThatTellsNothingIsOnTheDiskAtItsEnd) {
  KTL_NEEDS_FILE();
  const test::PowerCut power(company.File());
  Connect();
  RunGuarded(session, ErrorStyle::NumberFirst, "", [&] {
    session.Cn.Execute("INSERT INTO MAS_EMPLOYEE (EMPID) VALUES (17)");
    EXPECT_EQ(power.EmployeesLeft(), 0);
  });
  EXPECT_EQ(power.EmployeesLeft(), 1);
}

}  // namespace
}  // namespace ktl
