#pragma once

#include <vector>

#include "common/statement.h"
#include "instructions/instruction_parent.h"

namespace ktl {

struct Session;

// "EMPID = 17 And SERIALNO = 3 And SITYPE = 2"
Statement WhereInstruction(const InstructionKey& key);

// Of one of the tables that hang on an instruction, or of its own.
void DeleteRows(Session& session, const char* table, const InstructionKey& key);

// Where the condition on the unit's lock stands in the attendance statement: the writers differ in it.
enum class AttendanceWording { EmployeeFirst, LockFirst };

// Asks the salary side to calculate the employee's months again. `months` is the end of "MONTHYEAR ...", one
// of the two below. Attendance is marked too where the database has it; a unit-locked row is left alone.
void RaiseEditMode(Session& session, long employee, const Statement& months, AttendanceWording wording);
// "In (Select MONTHYEAR From INS_EMIDETAIL Where ...)" over all months of the instruction.
Statement MonthsOfInstruction(const InstructionKey& key);
// "= 24121"
Statement OneMonth(long monthYear);

// The months of the schedule in their order.
std::vector<long> ReadScheduleMonths(Session& session, const InstructionKey& key);
// "No end" of a range of months, as the employee lock takes it.
inline constexpr const char* kNoLastMonth = "36000";
bool IsMonthLocked(Session& session, long monthYear);
bool HasSchedule(Session& session, const InstructionKey& key);
// The highest counter of the instruction plus 1; 1 when it has no month.
long NextCounter(Session& session, const InstructionKey& key);

// A month behind the instruction's last one, with the amount as actual and modified instalment.
struct NewMonth {
  double amount = 0;
  long counter = 0;
  // Of instructions that keep principal and interest apart: ",ACTPRNAMT,..." and ",300,...".
  Statement furtherColumns = {};
  Statement furtherValues = {};
};
// The month added; 0 and nothing written when the instruction has no month. Raises no flags.
long AddMonthAtEnd(Session& session, const InstructionKey& key, const NewMonth& month);
// The same with the next counter.
void AddMonthAtEnd(Session& session, const InstructionKey& key, double amount);

}  // namespace ktl
