#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "frame/session.h"
#include "screen/person.h"
#include "screen/screen.h"
#include "support/company_fixture.h"
#include "support/fake_machine.h"
#include "support/scripted_desk.h"
#include "support/temporary_folder.h"

namespace ktl {

using Texts = std::vector<std::string>;

// A program of its own at a company: its machine, the person before it, its session and the screen on top.
class Workstation {
 public:
  // Of the user RAVI; months are allowed from Apr/2024 on.
  explicit Workstation(test::TestCompany& company);

  // The texts of the boxes that came up, answered in turn.
  Texts Press(Button& button, std::vector<Answer> answers = {});
  template <typename ScreenType, typename... Arguments>
  ScreenType& Open(Arguments&&... arguments) {
    auto opened = std::make_unique<ScreenType>(session, std::forward<Arguments>(arguments)...);
    ScreenType& result = *opened;
    top = std::move(opened);
    RunAndGrantFocus(*top, [this] { top->Load(); });
    return result;
  }

  void MakeLocalStore();  // which the marking of tax flags reads

  TemporaryFolder folder;
  FakeMachine machine;
  ScriptedDesk desk;
  Session session{machine.machine(), desk};
  std::unique_ptr<Screen> top;
};

struct HasCompany {
  test::TestCompany company;
};

// A test before a workstation of an empty company.
class WorkstationTest : public testing::Test, protected HasCompany, protected Workstation {
 protected:
  WorkstationTest() : Workstation(company) {}

  void Run(const std::string& sql) { company.Execute(sql); }
  std::string Rows(const std::string& sql) { return company.Rows(sql); }
  std::string LastAudit();
};

}  // namespace ktl
