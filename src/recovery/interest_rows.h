#pragma once

#include <optional>
#include <string>
#include <vector>

#include "common/typed_amount.h"
#include "instructions/entry_questions.h"
#include "instructions/instruction_parent.h"
#include "instructions/schedule_month.h"
#include "screen/grid.h"

namespace ktl {

struct Session;

// The months of the instruction under that name, in their order, their principals and interests alone: a null
// counts 0.
std::vector<ScheduleMonth> ReadInterestRows(Session& session, const InstructionKey& key,
                                            const std::string& name);

// Whose months these are: "Ref. No. : K17" and "Emp. Name : Asha Rao".
struct EmployeeLabels {
  std::string reference, name;
};
EmployeeLabels ReadEmployeeLabels(Session& session, long employee);

// Locks and amounts that stand against writing the months.
std::optional<Refusal<NoField>> CheckInterestRows(Session& session, const InstructionKey& key,
                                                  const std::vector<ScheduleMonth>& months);

// Writes every month and flags it, then the total interest of the instruction, and the audit line with the
// months that were changed.
void WriteInterestRows(Session& session, const InstructionKey& key, const std::string& name,
                       const std::vector<ScheduleMonth>& months);

// Amounts of a pasted block, rows by line breaks and cells by tabs, each with its place. A copy of the list
// comes back under its headings, which tell the columns, and its months tell the rows; any other block starts
// in the corner of the selection, and in more than one selected cell it has to fit. Nothing when it does not
// fit, or a cell is no amount.
struct PlacedAmount {
  std::size_t row, column;
  double amount;
};
std::optional<std::vector<PlacedAmount>> PlaceBlock(const std::string& block, const GridRange& selection,
                                                    const Grid& list);

}  // namespace ktl
