#pragma once

#include <memory>
#include <string>

#include "formula/clsExprEval.h"
#include "formula/employee_reads.h"
#include "formula/family_counts.h"
#include "formula/formula_request.h"
#include "formula/formula_text.h"

namespace ktl {

struct Session;

// The families of the employee: his detail row, custom fields and queries, dates, funds and units.
class EmployeeTokens final {
 public:
  EmployeeTokens(Session& session, std::shared_ptr<EmployeeReads> reads, FamilyCounts& counts)
      : session_(session), reads_(std::move(reads)), counts_(counts) {}

  void Fill(TokenTable& table, const FormulaRequest& request, const FormulaText& formula);

 private:
  void FillDetailFields(TokenTable& table, const FormulaRequest& request);
  void FillExtendedFields(TokenTable& table, const FormulaRequest& request);
  void FillCustomFields(TokenTable& table, const FormulaRequest& request);
  void FillCustomQueries(TokenTable& table, const FormulaRequest& request);
  void FillDates(TokenTable& table, const FormulaRequest& request);
  void FillFunds(TokenTable& table, const FormulaRequest& request);
  void FillUnits(TokenTable& table, const FormulaRequest& request);

  Session& session_;
  std::shared_ptr<EmployeeReads> reads_;
  FamilyCounts& counts_;
};

}  // namespace ktl
