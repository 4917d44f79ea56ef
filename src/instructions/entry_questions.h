#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/refusal.h"
#include "instructions/instruction_parent.h"
#include "instructions/schedule_month.h"

namespace ktl {

class Button;

// What every entry screen asks and refuses in the same way.

// Asked before a new record that is not saved gives way: "Do you want to Save entered details?". False keeps
// the record: Cancel, a user who may not press Save, or a save that came to nothing.
bool MayLeaveNewRecord(Session& session, const char* question, const Button& cmdSave,
                       const std::function<bool()>& save);

// Remarks of an instruction or a receipt: more than any company's column holds.
inline constexpr const char* kRemarksTooLong = "Remarks should be within 4000 characters";
bool AreRemarksTooLong(std::string_view remarks);

enum class NoField {};
// What stands against deleting an instruction: locked months of its schedule, the employee's lock over all of
// it. The caption is the company's word for the type.
std::optional<Refusal<NoField>> FindDeleteRefusal(Session& session, const InstructionKey& key,
                                                  const std::string& caption);

// What stands against deleting months of an instruction. One locked month keeps them all: it has to be
// unticked first.
std::optional<Refusal<NoField>> FindMonthsRefusal(Session& session, long employee,
                                                  const std::vector<ScheduleMonth>& months);

// Opens the employee's full and final settlement, for users who may see it.
void OpenEmployeeSummary(Session& session, long employee);

}  // namespace ktl
