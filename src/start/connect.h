#pragma once

#include <optional>
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

// The connection string of the company that is open in the host; nothing when none is.
std::optional<std::string> ConnectionOfHost(Session& session);
// The one that the first line of a data file tells: "x:server:database[:user:password]", the last two
// scrambled. Nothing when the line is empty; errors 53 and 62 without a file or a line, 9 when elements are
// missing.
std::optional<std::string> ConnectionOfFile(const std::string& path);

}  // namespace ktl
