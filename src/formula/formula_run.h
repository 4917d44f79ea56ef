#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "formula/clsEvalFormula.h"
#include "formula/run_reads.h"

namespace ktl {

// One formula for many employees in one month: masters and employees are as they were when the first of them
// was asked for, whatever is written in between. Where the formula may read those writes, each is evaluated
// when he is asked for. Amounts and boxes are those of clsEvalFormula for each alone.
class FormulaRun final {
 public:
  // Told how many have been evaluated, one by one: with the first to be asked for all others are.
  using ToldOfReckoned = std::function<void(std::size_t reckoned)>;
  // The request names no employee. The employees in the order in which they will be asked for.
  FormulaRun(Session& session, FormulaRequest request, const std::vector<long>& employees,
             ToldOfReckoned reckoned = {});

  // By the detail row of the month; 0 without one. A failure shows its description and gives 0.
  double AmountOf(long empId);
  // The same, but a failure is thrown.
  double Amount(long empId);

 private:
  void ReadInOrderOf(std::vector<RunPerson> people);
  std::optional<double> Reckoned(const RunPerson& person);
  std::optional<double> ReckonAhead(const RunPerson& first);
  std::optional<double> Together(const RunPerson& person);
  double Alone(const RunPerson& person);

  Session& session_;
  FormulaRequest request_;
  ToldOfReckoned reckoned_;
  std::unordered_map<long, long> detailRows_;
  std::vector<RunPerson> people_;
  std::shared_ptr<RunReads> reads_;  // none before the first is asked for
  std::optional<clsEvalFormula> together_;
  std::optional<clsEvalFormula> alone_;
  // Nothing for those who failed; empty where nobody can be reckoned ahead.
  std::unordered_map<long, std::optional<double>> ahead_;
};

}  // namespace ktl
