#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "frame/options.h"
#include "frame/session.h"
#include "instructions/modAdvLoan.h"
#include "screen/person.h"
#include "start/connect.h"
#include "support/company_fixture.h"
#include "support/fake_machine.h"
#include "support/scripted_desk.h"

namespace ktl {

using Texts = std::vector<std::string>;
using enum InstructionType;

// A company, the machine of its user and the person before a screen.
class InstructionScreen : public testing::Test {
 protected:
  InstructionScreen();

  void Run(const std::string& sql) { company.Execute(sql); }
  std::string Rows(const std::string& sql) { return company.Rows(sql); }
  std::string LastAudit();
  // The texts of the boxes that came up, answered in turn.
  Texts Press(Button& button, std::vector<Answer> answers = {});

  test::TestCompany company;
  FakeMachine machine;
  ScriptedDesk desk;
  Session session{machine.machine(), desk};
};

// The entry screen on a company with one employee, 17, in service since 01/Apr/2010. The months are Apr/2024
// (24292) to Mar/2027 (24327); none is locked.
class EntryScreen : public InstructionScreen {
 protected:
  EntryScreen();
  ~EntryScreen() override;

  // Months, counters and both amounts of the schedule: "24321 1 3333 3333" and so on.
  std::string Schedule(long serial = 1);

  modAdvLoan& Open(InstructionType type);
  modAdvLoan& OpenOn(InstructionType type, const char* employee = "Asha Rao");
  modAdvLoan& OpenOnFirst(InstructionType type);  // and clicks the first instruction of the list
  modAdvLoan& BeginNew(InstructionType type, const char* name, const char* date, const char* amount);
  // A new advance of 10000 by a lump sum of 1000 from Oct/2026, ready to be saved.
  modAdvLoan& EnterAdvance();
  modAdvLoan& EnterLoan();

  std::unique_ptr<modAdvLoan> screen;
};

}  // namespace ktl
