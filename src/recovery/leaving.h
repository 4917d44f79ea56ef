#pragma once

#include <optional>
#include <string>
#include <vector>

#include "instructions/instruction_parent.h"

namespace ktl {

struct Session;

// What is still to be recovered from an employee who has left.

struct Leaver {
  std::string reference;
  std::string name;
  std::string leavingDate;  // "31/Mar/2026", "" for who has not left

  bool operator==(const Leaver&) const = default;
};
Leaver ReadLeaver(Session& session, long employee);  // empty texts when there is no such employee

// One instruction with its months, rupees.
struct PendingInstruction {
  InstructionKey key;
  std::string typeText;
  std::string name;
  double total = 0;      // as modified
  double recovered = 0;  // by salaries and by hand

  double Balance() const { return total - recovered; }
};

// Every instruction of the employee, periodic incentives left out, with nothing recovered yet.
std::vector<PendingInstruction> FillPendingGrid(Session& session, long employee);
// A month that is both salaried and marked by hand counts twice.
void FillRecoveredAmounts(Session& session, std::vector<PendingInstruction>& pending);
// Only what is still to be recovered stays.
void DropSettled(std::vector<PendingInstruction>& pending);

// The salary month of the leaving date, the calendar month where no range holds it. Throws when there is no
// date.
long LeavingMonth(Session& session, const std::string& leavingDate);

// Of one instruction: everything scheduled from the leaving month on is recovered in that month, or what lies
// behind it is given up; the months behind stay with amounts of 0. Without a row in the leaving month folding
// gives up what lies behind as well. One transaction with flags (folding only) and audit line. Throws
// DatabaseError, with nothing written, when the employee or the total is no longer as listed, or he has been
// locked since.
enum class AfterLeaving { Fold, Clear };
struct LeavingTerms {
  Leaver leaver;  // as shown
  long monthYear = 0;
  AfterLeaving deed = AfterLeaving::Fold;
};
void SettleAfterLeaving(Session& session, const PendingInstruction& pending, const LeavingTerms& terms);

}  // namespace ktl
