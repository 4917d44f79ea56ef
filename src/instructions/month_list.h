#pragma once

#include <string_view>
#include <vector>

#include "common/statement.h"
#include "database/statement_twin.h"
#include "instructions/instruction_type.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// The months that instalments stand in, newest first, under each dialect. The program is built for "SQL",
// whose text lists the months of all employees; only "ACC97" asks for whom and of which type (None for all).
// Throws RuntimeError 5 for an unknown dialect.
Statement MonthListStatement(const Session& session, std::string_view dbType, long employee,
                             InstructionType type);
// The one of "SQL". The embedded store steps from month to month over an index, where the text would read
// every instalment of the company; the setup is part of every new company.
extern const StatementTwin kMonthList;

// "Apr/2010" with MONTHYEAR behind it.
std::vector<ListRow> ReadMonthList(Session& session);

}  // namespace ktl
