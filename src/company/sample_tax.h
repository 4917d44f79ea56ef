#pragma once

#include "company/raw_database.h"

namespace ktl {

// What is reckoned from the employees: allotted and claimed reimbursements, arrears, the income-tax side and
// the yearly benefit of three of them.
void WriteReimbursements(RawDatabase& database);
void WriteArrears(RawDatabase& database);
void WriteIncomeTax(RawDatabase& database);

}  // namespace ktl
