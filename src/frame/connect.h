#pragma once

#include <string>

namespace ktl {

struct CommandLine;
struct Session;

// Converts the fields of the command line into the session and opens the company's database. False when no
// company is open in the host: the box has been shown by then. Throws what the run-time and the database
// layer refuse.
bool Connect(Session& session, const CommandLine& line);

// Opens Cn anew, with the time-outs of the settings store and the client's identity.
void OpenConnection(Session& session, const std::string& connectionString);

}  // namespace ktl
