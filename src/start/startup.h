#pragma once

#include <string>

namespace ktl {

struct Session;

// Fills the doors and the registry with every screen of the program that is not in them yet.
void RegisterScreens(Session& session);

// The whole run: reads the command line, connects, loads options, opens one screen modally and comes back
// when it is gone. Registers the screens itself; one that the caller has put into the registry before stays.
// The answer is the process's exit status: 0, or 1 when no screen was opened (a box has said why). Throws
// what no handler caught.
int RunProgram(Session& session, const std::string& commandLine);

}  // namespace ktl
