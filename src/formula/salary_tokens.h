#pragma once

#include <memory>
#include <string>
#include <vector>

#include "formula/clsExprEval.h"
#include "formula/employee_reads.h"
#include "formula/formula_request.h"
#include "formula/formula_text.h"

namespace ktl {

// The families of the salary: Component{, CV{ and (GrossSalary).
class SalaryTokens final {
 public:
  explicit SalaryTokens(std::shared_ptr<EmployeeReads> reads);

  void Fill(TokenTable& table, const FormulaRequest& request, const FormulaText& formula);

 private:
  struct Head {
    std::string heading;
    bool earning = true;
    std::string field;  // empty when there is none for its number
  };
  struct Heads {
    std::vector<Head> rows;
    std::string columns;  // ", BASIC, ECOMP01"
  };

  void FillRate(TokenTable& table, const FormulaRequest& request);
  void FillCalculated(TokenTable& table, const FormulaRequest& request, const FormulaText& formula);
  std::shared_ptr<const Heads> HeadsOf(const std::string& formula);
  Heads ReadHeads(const std::string& formula);
  double ArrearsOf(const FormulaRequest& request, const Head& head);

  std::shared_ptr<EmployeeReads> reads_;
  long highestHead_ = 0;
};

}  // namespace ktl
