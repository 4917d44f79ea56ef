#pragma once

#include "company/raw_database.h"
#include "company/sample_model.h"

namespace ktl {

// Users, buttons and their rights, the history of month locks, months locked for one employee.
void WriteSecurity(RawDatabase& database, int employees);
// The employees of branch 1, for the user who may see no others.
void WriteClassSecurity(RawDatabase& database);

}  // namespace ktl
