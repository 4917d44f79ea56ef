#pragma once

#include <string>

#include "frame/session.h"

namespace ktl {

// Fills the registry with every screen of the program.
void RegisterScreens(ScreenRegistry& screens);

// The whole run: reads the command line, connects, loads options, opens one screen modally and comes back when it is
// gone. The answer is the process's exit status. Throws what no handler caught.
int RunProgram(Session& session, const std::string& commandLine);

}  // namespace ktl
