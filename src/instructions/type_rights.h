#pragma once

#include "instructions/instruction_type.h"

namespace ktl {

class Screen;
struct Session;

// Tags the screen's buttons with the numbers that the rights of the type are kept under, and marks those that
// the user's group may not press.
void ApplyTypeRights(Session& session, Screen& screen, InstructionType type);

}  // namespace ktl
