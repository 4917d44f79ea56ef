#pragma once

#include <vector>

#include "instructions/instruction_type.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// What the choices of an entry screen list.

// The employees that the user may see, by the column that is shown or in the order given; the value is EMPID.
std::vector<ListRow> ReadEmployees(Session& session, const char* shownColumn, const char* order = nullptr);
// Of these, those with an instalment of the type in the newest month.
std::vector<ListRow> ReadEmployeesWithRunningEmi(Session& session, InstructionType type,
                                                 const char* shownColumn);
// The names under which instructions of the type can be given.
std::vector<ListRow> ReadNames(Session& session, InstructionType type);
std::vector<ListRow> ReadInstitutions(Session& session, InstructionType type);
std::vector<ListRow> ReadFormulas(Session& session);

}  // namespace ktl
