#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formula/clsExprEval.h"
#include "formula/clsNODNDP.h"
#include "formula/clsNODNDPCALC.h"
#include "formula/day_count.h"
#include "formula/formula_text.h"
#include "formula/modAttSetting.h"
#include "runtime/date.h"

namespace ktl {

class Recordset;
struct Session;

// What a formula is evaluated for.
struct FormulaRequest {
  long formulaId = 0;
  long empId = 0;
  long empDetId = 0;
  long monthYear = 0;
  DayRange period;
  bool addArrears = false;
  std::string grossFromCalc;
};

// A formula with all that goes into it.
struct PreparedFormula {
  std::string text;
  TokenTable first;
  TokenTable second;
};

// The amount of a formula of MAS_FORMULA for one employee and one month. A caller with many employees keeps
// one object: it remembers how many rows the token families have.
class clsEvalFormula final {
 public:
  explicit clsEvalFormula(Session& session);

  // dteFrom and dteTo are the first and last day of the period. blnAddArrears adds arrears to CV{ values;
  // strGrossFromCalc, when not empty, takes (GrossSalary) from the calculated salary. Nothing is thrown: an
  // evaluation that fails gives 0, any other failure shows its description and gives 0.
  double FnDblEvalFormula(long lngFormulaID, long lngEmpID, long lngEmpDetID, long lngMonthYear,
                          const Date& dteFrom, const Date& dteTo, bool blnAddArrears = false,
                          std::string_view strGrossFromCalc = "");
  // For the detail row that the month's salary was calculated for; 0 when there is none.
  double FnDblEvalSalFormula(long lngFormulaID, long lngEmpID, long lngMonthYear);
  // Appends the attendance families: all, or those that a formula mentions. blnZeroLeave makes all leave 0.
  void FillOtherData(TokenTable& arrTokens, const DayRequest& request, const DayCounts& days,
                     bool blnZeroLeave, const FormulaText* formula = nullptr);

  // The parts of FnDblEvalFormula, for those who want to see them; these throw.
  PreparedFormula Prepare(const FormulaRequest& request);
  Value Evaluate(const PreparedFormula& formula) const;
  static double AmountOf(const Value& result);

 private:
  // Rows of the token families that have as many tokens as a table has rows.
  struct Counts {
    long unitHeads = 0;
    long reimbursements = 0;
    long extendedFields = 0;
    long customFields = 0;
    long customQueries = 0;
  };
  const Counts& CountCache();

  struct SalaryHead {
    std::string heading;
    bool earning = true;
    std::string field;  // empty when there is none for its number
  };

  bool PeriodLeave(long monthYear) const;
  DayCounts DaysOf(const DayRequest& request);
  void FillFirstTable(TokenTable& table, const FormulaRequest& request, const FormulaText& formula);
  void FillSalaryRate(TokenTable& table, const FormulaRequest& request);
  void FillCalculated(TokenTable& table, const FormulaRequest& request, const FormulaText& formula);
  std::vector<SalaryHead> SalaryHeads(const std::string& formula);
  static std::string ColumnsOf(const std::vector<SalaryHead>& heads);
  void FillSalaryHeads(TokenTable& table, const Recordset& salary, const std::vector<SalaryHead>& heads,
                       const std::string& family, bool addArrears);
  double ArrearsOf(const Recordset& salary, const SalaryHead& head);
  void FillSecondTable(TokenTable& table, const FormulaRequest& request, const FormulaText& formula);
  void FillAttendance(TokenTable& table, const FormulaRequest& request, const FormulaText& formula);

  void FillDetailFields(TokenTable& table, const FormulaRequest& request);
  void FillExtendedFields(TokenTable& table, const FormulaRequest& request);
  void FillCustomFields(TokenTable& table, const FormulaRequest& request);
  void FillCustomQueries(TokenTable& table, const FormulaRequest& request);
  void FillDates(TokenTable& table, const FormulaRequest& request);
  void FillFunds(TokenTable& table, const FormulaRequest& request);
  void FillUnits(TokenTable& table, const FormulaRequest& request);

  void FillLeave(TokenTable& table, const DayRequest& request, bool zeroLeave);
  double LeaveTaken(const DayRequest& request, long levId, bool monthlyHead);
  void FillHolidays(TokenTable& table, const DayRequest& request, const FormulaText* formula);
  void FillReimbursements(TokenTable& table, const DayRequest& request);
  void FillDays(TokenTable& table, const DayRequest& request, const DayCounts& days, bool withTotals);

  std::string FnStrMonthEndDate(long monthYear) const;
  std::string TextOf(const std::string& sql, const char* ifNone) const;
  double NumberOf(const std::string& sql) const;

  Session& session_;
  long highestHead_ = 0;
  std::optional<Counts> counts_;
  modAttSetting attSetting_;
  clsNODNDP attendanceDays_;
  clsNODNDPCALC periodDays_;
};

// The detail row with the latest effective month that is not after the month: the one that the callers of a
// formula take. Throws when the read fails.
std::optional<long> DetailRowOfMonth(Session& session, long empId, long monthYear);

}  // namespace ktl
