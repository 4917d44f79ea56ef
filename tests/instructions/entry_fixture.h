#pragma once

#include "instructions/modAdvLoan.h"
#include "support/workstation.h"

namespace ktl {

using enum InstructionType;

// The entry screen on a company with one employee, 17, in service since 01/Apr/2010. The months are Apr/2024
// (24292) to Mar/2027 (24327); none is locked.
class EntryScreen : public WorkstationTest {
 protected:
  EntryScreen();

  // Months, counters and both amounts of the schedule: "24321 1 3333 3333" and so on.
  std::string Schedule(long serial = 1);

  modAdvLoan& Open(InstructionType type);
  modAdvLoan& OpenOn(InstructionType type, const char* employee = "Asha Rao");
  modAdvLoan& OpenOnFirst(InstructionType type);  // and clicks the first instruction of the list
  modAdvLoan& BeginNew(InstructionType type, const char* name, const char* date, const char* amount);
  // A new advance of 10000 by a lump sum of 1000 from Oct/2026, ready to be saved.
  modAdvLoan& EnterAdvance();
  modAdvLoan& EnterLoan();

  modAdvLoan* screen = nullptr;
};

}  // namespace ktl
