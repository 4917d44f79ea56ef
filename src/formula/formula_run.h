#pragma once

#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "formula/clsEvalFormula.h"
#include "formula/run_reads.h"

namespace ktl {

// One formula for many employees in one month. For as long as it lives the masters are as they were read
// first, and the employees as they were when the block of them that is at work was read; the employees' own
// writes may come in between. Amounts and boxes are those of clsEvalFormula for each alone.
class FormulaRun final {
 public:
  // The request names no employee. The employees in the order in which they will be asked for.
  FormulaRun(Session& session, FormulaRequest request, const std::vector<long>& employees);

  // By the detail row of the month; 0 without one. A failure shows its description and gives 0.
  double AmountOf(long empId);
  // The same, but a failure is thrown.
  double Amount(long empId);

 private:
  std::optional<double> Together(const RunPerson& person);
  void ReckonAhead();

  Session& session_;
  FormulaRequest request_;
  std::unordered_map<long, long> detailRows_;
  std::shared_ptr<RunReads> reads_;
  clsEvalFormula together_;
  std::optional<clsEvalFormula> alone_;
  std::unordered_map<long, double> ahead_;  // of the block at work
};

}  // namespace ktl
