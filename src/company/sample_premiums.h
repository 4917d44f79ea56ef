#pragma once

#include <cstdint>

#include "company/row_writer.h"
#include "company/sample_model.h"

namespace ktl {

// Insurance, SSS, group insurance and periodic incentives of an employee.
std::vector<SampleInstruction> MakePremiums(std::uint64_t seed, const SamplePerson& person);

std::vector<SampleInstruction> AnchorPremiums(int employee);

class PremiumWriter final {
 public:
  explicit PremiumWriter(SqliteDatabase& database);
  void Write(int employee, const SampleInstruction& premium);

 private:
  RowWriter premium_;
};

}  // namespace ktl
