#pragma once

#include <memory>
#include <string>

#include "formula/clsExprEval.h"
#include "formula/clsNODNDP.h"
#include "formula/clsNODNDPCALC.h"
#include "formula/employee_reads.h"
#include "formula/family_counts.h"
#include "formula/formula_request.h"
#include "formula/formula_text.h"
#include "formula/modAttSetting.h"

namespace ktl {

struct Session;

// The families of attendance: leave, hours, holidays, reimbursements and days.
class AttendanceTokens final {
 public:
  AttendanceTokens(Session& session, std::shared_ptr<EmployeeReads> reads, FamilyCounts& counts);

  // When the formula opens them.
  void Fill(TokenTable& table, const FormulaRequest& request, const FormulaText& formula);
  // All, or those that a formula mentions.
  void FillOther(TokenTable& table, const DayRequest& request, const DayCounts& days, bool zeroLeave,
                 const FormulaText* formula);

  DayRange MonthOf(long monthYear) { return attendanceDays_.SetMonthCalcDates(monthYear); }

 private:
  bool PeriodLeave(long monthYear) const;
  DayCounts DaysOf(const DayRequest& request);
  void FillLeave(TokenTable& table, const DayRequest& request, bool zeroLeave);
  double LeaveTaken(const DayRequest& request, long levId, bool monthlyHead);
  void FillHours(TokenTable& table, const DayRequest& request);
  void FillHolidays(TokenTable& table, const DayRequest& request, const FormulaText* formula);
  bool StructureMentions(const char* token, const DayRequest& request);
  void FillReimbursements(TokenTable& table, const DayRequest& request);
  double Allotted(const DayRequest& request, long head);
  double Claimed(const DayRequest& request, long head);
  void FillDays(TokenTable& table, const DayRequest& request, const DayCounts& days, bool withTotals);

  Session& session_;
  std::shared_ptr<EmployeeReads> reads_;
  FamilyCounts& counts_;
  modAttSetting attSetting_;
  clsNODNDP attendanceDays_;
  clsNODNDPCALC periodDays_;
};

}  // namespace ktl
