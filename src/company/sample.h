#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "company/row_writer.h"
#include "company/sample_loans.h"
#include "company/sample_model.h"

namespace ktl {

struct SampleOptions {
  int employees = kAnchors;
  std::uint64_t seed = 1;
  LoanTargets targets;
  int salaryTo = kSalaryTo;
  std::vector<std::string> variants;
};

// Fills a company that has the schema and the required rows. The same options give the same rows.
void FillSample(SqliteDatabase& database, const SampleOptions& options);

// Changes that show another set-up of the same company: "mar2feb", "refno", ...
std::vector<std::string> VariantNames();

}  // namespace ktl
