#pragma once

#include <optional>
#include <string_view>

#include "company/row_writer.h"
#include "company/sample_model.h"

namespace ktl {

// One name of INS_MASTER.
struct SampleName {
  SampleType type;
  const char* name;
  std::optional<const char*> account;
  bool tds = false;
  std::optional<int> preference;
  std::optional<double> amountLimit;
  std::optional<int> timesAllowed;
  std::optional<int> instalments;
  std::optional<double> interestRate;
  bool reducing = false;
  bool separate = false;  // principal and interest apart
  bool benefit = false;   // under the interest benefit
  std::optional<int> taxSection;
};

const SampleName& NameRules(SampleType type, std::string_view name);

// Everything that does not belong to an employee, but for users and rights.
void WriteMasters(SqliteDatabase& database);
void WriteMonths(SqliteDatabase& database);

}  // namespace ktl
