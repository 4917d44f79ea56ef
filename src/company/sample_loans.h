#pragma once

#include <cstdint>
#include <optional>

#include "company/row_writer.h"
#include "company/sample_model.h"

namespace ktl {

// How many advances and loans, and how many instalments, the company is to have. With a target only the
// anchors have premiums, so that every instalment behind them is one of an advance or a loan.
struct LoanTargets {
  std::optional<int> loans;         // rows of INS_ADVLOAN
  std::optional<long> instalments;  // rows of INS_EMIDETAIL

  bool Any() const { return loans || instalments; }
};

// The advances and loans of the employees behind the anchors. Without targets each employee's come from his
// own random streams alone; a target spreads itself evenly over the employees, or over the loans. A
// CompanyError when a target is below what the anchors and one instalment a loan take.
class SampleLoans final {
 public:
  SampleLoans(std::uint64_t seed, int employees, LoanTargets targets);
  std::vector<SampleInstruction> Make(const SamplePerson& person);

 private:
  struct Count {
    int advances;
    int loans;
  };
  Count CountOf(int employee) const;
  std::optional<int> NextLength();
  void PlanLengths();

  std::uint64_t seed_;
  int employees_;
  LoanTargets targets_;
  int anchorLoans_ = 0;
  long anchorRows_ = 0;
  long bulkLoans_ = 0;
  long made_ = 0;  // loans given a length so far
};

class LoanWriter final {
 public:
  explicit LoanWriter(SqliteDatabase& database);
  void Write(int employee, const SampleInstruction& loan);
  // The schedule alone, of an instruction of any type.
  void WriteInstalments(int employee, const SampleInstruction& instruction);

 private:
  RowWriter loan_;
  RowWriter instalment_;
  RowWriter receipt_;
};

// The house-property records of the anchors' housing loans.
void WriteHouseLoans(SqliteDatabase& database);

}  // namespace ktl
