#pragma once

#include <ostream>
#include <string>

#include "console/script.h"
#include "screen/screen.h"

namespace ktl {

// Runs one command of the script language on the screen, but for those of the answer queue, which are the
// desk's. Throws CommandError or PersonError when it cannot be done, and what a handler throws.
void RunScreenCommand(const std::string& verb, CommandWords& words, Screen& screen, std::ostream& out);

}  // namespace ktl
