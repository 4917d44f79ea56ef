#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "common/statement.h"
#include "instructions/instruction_parent.h"

namespace ktl {

struct Session;

// Whose net pay of a month has fallen below a floor, and which of their recoveries give way for it.

struct PreferenceTerms {
  InstructionType type = InstructionType::Loan;
  long monthYear = 0;
  std::optional<double> percent;  // the floor, of the gross; without one the net pay stays at zero
  bool partial = false;           // the last recovery moved may be moved only in part
};

// One recovery of the month.
struct PreferenceRow {
  long employee = 0;
  std::string reference;
  std::string employeeName;
  std::string instruction;
  long serial = 0;
  double emi = 0;
  double netPay = 0;  // of the calculated salary, as gross
  double gross = 0;

  double moved = 0;
  double before = 0;  // the net pay without this row's move, and with it
  double after = 0;
  double floor = 0;
  bool ticked = false;
  bool held = false;  // the employee is locked: the row is shown and never moved
};

// The recoveries of who is below the floor, an employee's own together, those that give way first in front.
std::vector<PreferenceRow> ReadShortRecoveries(Session& session, const PreferenceTerms& terms);

// Walks the rows as read: each is moved, and ticked, until its employee's net pay has reached the floor. The
// list takes everybody who is below the exact floor; the walk lifts them to the rounded one. Held rows are
// not moved; the running net of the rows behind them stays as if they were.
void FillPreference(std::vector<PreferenceRow>& rows, const PreferenceTerms& terms, int roundType);

// Walks the rows of one employee again after a tick of his was changed; the answer is which they are. What is
// ticked is moved only while the net pay is below the floor.
std::vector<std::size_t> RecalcEmployee(std::vector<PreferenceRow>& rows, std::size_t line, bool partial);

// The column as a statement names it: the Access dialect takes it for one of its own words.
Statement BracketedForAccess(const Session& session, const std::string& column);

// Whether the employee is locked, as a whole or from the month on.
bool IsHeld(Session& session, long employee, long monthYear);

}  // namespace ktl
