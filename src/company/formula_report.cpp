#include "company/formula_report.h"

#include <fmt/format.h>

#include <cctype>

#include "common/month_year.h"
#include "company/company_error.h"
#include "frame/session.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {
namespace {

constexpr const char* kPlainTokens[] = {
    "(PTGroup)",         "(SalaryMonth)", "(GrossSalary)",     "(PFYN)",
    "(RESPFYN)",         "ESIYN",         "OT1UNIT",           "OT2UNIT",
    "(AdjHours)",        "(GenHoliday)",  "(TotalGenHoliday)", "(WeekHoliday)",
    "(TotalWeekHoliday)"};

// WORD{...}, wherever it stands.
std::vector<std::string> BraceTokens(const std::string& text) {
  std::vector<std::string> tokens;
  for (std::size_t open = text.find('{'); open != text.npos; open = text.find('{', open + 1)) {
    const std::size_t close = text.find('}', open);
    if (close == text.npos) break;
    std::size_t start = open;
    while (start > 0 && std::isalnum(static_cast<unsigned char>(text[start - 1]))) --start;
    tokens.push_back(text.substr(start, close - start + 1));
  }
  return tokens;
}

std::string TokenLines(const PreparedFormula& formula) {
  const FormulaText text(formula.text);
  std::string lines;
  for (const TokenTable* table : {&formula.first, &formula.second}) {
    for (const TokenRow& row : *table) {
      if (!text.Mentions(row.token)) continue;
      lines += fmt::format("token: {} = {}  ({})\n", row.token, row.text, row.source);
    }
  }
  for (const std::string& token : UnreplacedTokens(formula))
    lines += fmt::format("not replaced: {}\n", token);
  return lines;
}

std::string DayLine(const char* what, double byAttendance, double byPeriod) {
  return fmt::format("{:<24}{:>12}{:>16}\n", what, NumberText(byAttendance), NumberText(byPeriod));
}

}  // namespace

std::string ResultText(const Value& result) {
  if (result.IsNull()) return "Null";
  return result.IsEmpty() ? "Empty" : result.ToText();
}

std::vector<std::string> UnreplacedTokens(const PreparedFormula& formula) {
  const FormulaText written(formula.text);
  const FormulaText evaluated(clsExprEval::FinalText(formula.text, formula.first, formula.second));
  std::vector<std::string> tokens = BraceTokens(formula.text);
  for (const char* token : kPlainTokens)
    if (written.Mentions(token)) tokens.emplace_back(token);
  std::erase_if(tokens, [&](const std::string& token) { return !evaluated.Mentions(token); });
  return tokens;
}

DayRequest DayRequestOf(Session& session, long empId, const std::string& monthText) {
  const std::string month = FnStrCorrectMonth(monthText);
  if (month.empty())
    throw CompanyError(fmt::format("\"{}\" is no month; one looks like Apr/2026.", monthText));
  if (!session.data.FnBlnRecExists(fmt::format("SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPID = {}", empId)))
    throw CompanyError(fmt::format("There is no employee {}.", empId));
  DayRequest request{.empId = empId, .monthYear = clsDateHandle::FnLngFindMonthValue(month)};
  request.period = clsNODNDP(session).SetMonthCalcDates(request.monthYear);
  const auto detail = DetailRowOfMonth(session, empId, request.monthYear);
  if (!detail) throw CompanyError(fmt::format("Employee {} has no detail row up to {}.", empId, month));
  request.empDetId = *detail;
  request.attHeadId =
      session.data
          .FnVarGetDbValue(fmt::format("Select ATTHEADID From MAS_EMPLOYEEDET Where EMPDETID = {}", *detail),
                           0)
          .ToLong();
  return request;
}

std::string FormulaReport(Session& session, const FormulaRequest& request) {
  std::string report = fmt::format("employee {}, detail row {}, {}: {} to {}\n", request.empId,
                                   request.empDetId, FnStrFormatMonthYear(request.monthYear),
                                   clsDateHandle::FnStrInDateDTM(request.period.first),
                                   clsDateHandle::FnStrInDateDTM(request.period.last));
  try {
    clsEvalFormula engine(session);
    const PreparedFormula formula = engine.Prepare(request);
    report += fmt::format("formula {}: {}\n", request.formulaId, formula.text) + TokenLines(formula);
    report +=
        fmt::format("evaluated: {}\n", clsExprEval::FinalText(formula.text, formula.first, formula.second));
    const Value result = engine.Evaluate(formula);
    report += fmt::format("value: {}\namount: {}\n", ResultText(result),
                          NumberText(clsEvalFormula::AmountOf(result)));
  } catch (const RuntimeError& error) {
    report += fmt::format("failed: {}\namount: 0\n", error.description());
  }
  return report;
}

std::string DaysReport(Session& session, const DayRequest& request) {
  modAttSetting settings(session);
  settings.LoadHeadSettings(request.attHeadId);
  clsNODNDP attendance(session);
  clsNODNDPCALC period(session, settings);
  const DayRange service = period.SetValidPeriod(request.empId, request.period);
  std::string report = fmt::format(
      "employee {}, detail row {}, {}: {} to {}\nattendance head {} {}: {}, NODFORCALC {}{}\n", request.empId,
      request.empDetId, FnStrFormatMonthYear(request.monthYear), clsDateHandle::FnStrInDateDTM(service.first),
      clsDateHandle::FnStrInDateDTM(service.last), request.attHeadId, settings.head.ATTHEADNAME,
      settings.head.ATTCAP, settings.head.NODFORCALC,
      settings.head.TIGHTYN ? "" : ", days are those of the calculated salary");
  if (!period.FnBlnEmpExist(request.empId, service.last)) report += "not in service in this month\n";
  const DayCounts byAttendance = attendance.SetNODNDP(request);
  const DayCounts byPeriod = period.SetNODNDP(request);
  const auto holidays = [&](const char* what, DayKind kind) {
    return DayLine(what, attendance.FnDblGetHoliday(request.attHeadId, request.period, kind, request.empId),
                   period.FnDblGetHolAndLeave(request.attHeadId, request.period, request.empId, kind));
  };
  const auto leave = [&](const char* what, LeaveSelection selection) {
    return DayLine(what, attendance.FnDblGetLeave(request.empId, request.period, selection),
                   period.FnDblGetHolAndLeave(request.attHeadId, request.period, request.empId,
                                              DayKind::Leave, selection));
  };
  report += fmt::format("{:<24}{:>12}{:>16}\n", "", "attendance", "advanced leave");
  report += DayLine("calendar days", byAttendance.calendar, byPeriod.calendar);
  report += DayLine("pay days", byAttendance.pay, byPeriod.pay);
  report += DayLine("present days", byAttendance.present, byPeriod.present);
  report += holidays("weekly holidays", DayKind::Weekly);
  report += holidays("general holidays", DayKind::General);
  report += leave("leave", LeaveSelection::Leave);
  report += leave("leave without pay", LeaveSelection::AffectsSalary);
  const HolidayLists lists = period.ListHoliday(request.attHeadId, request.period, request.empId);
  return report +
         fmt::format("weekly holidays on: {}\ngeneral holidays on: {}\n", lists.weekly, lists.general);
}

}  // namespace ktl
