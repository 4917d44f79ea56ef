#pragma once

#include <optional>
#include <string>
#include <vector>

#include "instructions/entry_questions.h"
#include "instructions/instruction_parent.h"
#include "instructions/schedule_month.h"

namespace ktl {

struct Session;

// The months of the instruction under that name, in their order, their principals and interests alone: a null
// counts 0.
std::vector<ScheduleMonth> ReadInterestRows(Session& session, const InstructionKey& key,
                                            const std::string& name);

// Locks that stand against writing the months.
std::optional<Refusal<NoField>> CheckInterestRows(Session& session, const InstructionKey& key,
                                                  const std::vector<ScheduleMonth>& months);

// Writes every month and flags it, then the total interest of the instruction, and the audit line with the
// months that were changed.
void WriteInterestRows(Session& session, const InstructionKey& key, const std::string& name,
                       const std::vector<ScheduleMonth>& months);

// A pasted block of amounts: rows by line breaks, cells by tabs. Nothing when a cell is no amount or the rows
// differ in length.
using AmountBlock = std::vector<std::vector<double>>;
std::optional<AmountBlock> ParseAmountBlock(const std::string& text);

}  // namespace ktl
