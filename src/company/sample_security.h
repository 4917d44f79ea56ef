#pragma once

#include "company/row_writer.h"
#include "company/sample_model.h"

namespace ktl {

// Users, buttons and their rights, the history of month locks, months locked for one employee.
void WriteSecurity(SqliteDatabase& database, int employees);
// The employees of branch 1, for the user who may see no others.
void WriteClassSecurity(SqliteDatabase& database);

}  // namespace ktl
