#pragma once

#include <string>

#include "instructions/instruction_parent.h"

namespace ktl {

struct Session;

// The rows of an instruction as texts that differ when another workstation has changed one: what a
// WritingTurn watches. To be read before the lists that are shown, so that no change falls between.
std::string InstructionRow(Session& session, const InstructionKey& key);
std::string ScheduleRows(Session& session, const InstructionKey& key);
std::string ReceiptRows(Session& session, const InstructionKey& key);
// The instruction and its months.
std::string InstructionAndSchedule(Session& session, const InstructionKey& key);
// Months that are still to be made: kNothingThere while the instruction is stored and has none of them.
std::string MonthsTaken(Session& session, const InstructionKey& key, long firstMonth, long lastMonth);
inline constexpr const char* kNothingThere = "stored";

}  // namespace ktl
