#pragma once

#include <string>
#include <string_view>

#include "common/statement.h"
#include "instructions/instruction_parent.h"

namespace ktl {

struct Session;

// "EMPID = 17 And SERIALNO = 3 And SITYPE = 2"
std::string WhereInstruction(const InstructionKey& key);
// A typed text inside a quoted literal, quotes doubled by the dialect of the settings.
std::string SqlText(Session& session, std::string_view text);

// Where the condition on the unit's lock stands in the attendance statement: the writers differ in it.
enum class AttendanceWording { EmployeeFirst, LockFirst };

// Asks the salary side to calculate the employee's months again. `months` is the end of "MONTHYEAR ...": "=
// 24121", or "In (Select MONTHYEAR ...)". Attendance is marked too where the database has it; a unit-locked
// row is left alone.
void RaiseEditMode(Session& session, long employee, std::string_view months, AttendanceWording wording);
// "In (Select MONTHYEAR From INS_EMIDETAIL Where ...)" over all months of the instruction.
std::string MonthsOfInstruction(const InstructionKey& key);

bool IsMonthLocked(Session& session, long monthYear);
// The highest counter of the instruction plus 1; 1 when it has no month.
long NextCounter(Session& session, const InstructionKey& key);

// A month behind the instruction's last one, with the amount as actual and modified instalment.
struct NewMonth {
  double amount = 0;
  long counter = 0;
  // Of instructions that keep principal and interest apart: ",ACTPRNAMT,..." and ",300,...".
  std::string furtherColumns = {};
  std::string furtherValues = {};
};
// The month added; 0 and nothing written when the instruction has no month. Raises no flags.
long AddMonthAtEnd(Session& session, const InstructionKey& key, const NewMonth& month);
// The same with the next counter.
void AddMonthAtEnd(Session& session, const InstructionKey& key, double amount);

}  // namespace ktl
