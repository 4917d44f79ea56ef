#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/statement.h"
#include "instructions/instruction_master.h"

namespace ktl {

struct Session;

// The dialect that the program is built for. "ORA" writes a master by statements, all others through a
// recordset.
inline constexpr std::string_view kMasterDialect = "SQL";

// EMPID and SERIALNO joined to one comparable value. Throws RuntimeError 5 for an unknown dialect.
Statement EmployeeSerialPair(std::string_view dbType);

// The statements of one save under "ORA", to be run in one transaction when the name changes.
std::vector<Statement> OraSaveStatements(const Session& session, const InstructionMaster& master,
                                         const std::string& oldName, bool advanced);

// Carries a new name over to the instructions that stand under the old one.
std::vector<Statement> RenameStatements(const Session& session, const InstructionMaster& master,
                                        const std::string& oldName);

}  // namespace ktl
