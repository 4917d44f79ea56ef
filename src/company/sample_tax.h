#pragma once

#include "company/row_writer.h"

namespace ktl {

// What is reckoned from the employees: allotted and claimed reimbursements, arrears, the income-tax side and
// the yearly benefit of three of them.
void WriteReimbursements(SqliteDatabase& database);
void WriteArrears(SqliteDatabase& database);
void WriteIncomeTax(SqliteDatabase& database);

}  // namespace ktl
