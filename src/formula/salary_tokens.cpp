#include "formula/salary_tokens.h"

#include <fmt/format.h>

#include <utility>

#include "common/sql_text.h"
#include "formula/token_rows.h"
#include "runtime/errors.h"

namespace ktl {
namespace {

constexpr long kHeads = 30;  // columns ECOMPnn and DCOMPnn of an ordinary company

}  // namespace

SalaryTokens::SalaryTokens(std::shared_ptr<EmployeeReads> reads)
    : reads_(std::move(reads)), highestHead_(kHeads) {
  const auto wider = [&](int level) {
    return reads_->Exists(
        fmt::format("Select * From MAS_PULLDOWNVALUES Where REFID = 2000 And PDID = {}", level));
  };
  if (wider(1)) highestHead_ = 2 * kHeads;
  if (wider(2)) highestHead_ = 3 * kHeads;
}

void SalaryTokens::Fill(TokenTable& table, const FormulaRequest& request, const FormulaText& formula) {
  const bool wantsGross = formula.Mentions("(GrossSalary)");
  const bool grossFromCalc = !request.grossFromCalc.empty();
  if (formula.MentionsExactly("Component{") || (wantsGross && !grossFromCalc)) FillRate(table, request);
  if (formula.MentionsExactly("CV{") || (wantsGross && grossFromCalc))
    FillCalculated(table, request, formula);
}

// Only the columns of the heads are read: these tables are the widest of the company. A head beyond the
// highest one has no row in the table: error 9.
void SalaryTokens::FillRate(TokenTable& table, const FormulaRequest& request) {
  const auto heads = HeadsOf("");
  const Recordset rate = reads_->Rows(fmt::format(
      "Select TOTALENTERED{3} From SLC_SALARYRATE_E E LEFT JOIN SLC_SALARYRATE_D D ON E.SalRateID = "
      "D.SalRateID Where E.EMPID = {0} And E.EMPDETID = {1} And E.MONTHYEAR = (Select MAX(MONTHYEAR) "
      "From SLC_SALARYRATE_E Where EMPID = {0} And EMPDETID = {1} And MONTHYEAR <= {2})",
      reads_->Employee(request.empId), reads_->DetailRow(request.empDetId), request.monthYear,
      heads->columns));
  if (rate.Eof()) return;
  std::size_t column = 1;
  for (const Head& head : heads->rows) {
    if (head.field.empty()) throw RuntimeError::SubscriptOutOfRange();
    AddNumber(table, "Component{" + head.heading + "}", rate[column++], "salary rate in force");
  }
  if (request.grossFromCalc.empty())
    AddNumber(table, "(GrossSalary)", rate[0], "TOTALENTERED of the salary rate");
}

void SalaryTokens::FillCalculated(TokenTable& table, const FormulaRequest& request,
                                  const FormulaText& formula) {
  const auto heads = HeadsOf(formula.text());
  const Recordset salary = reads_->Rows(
      fmt::format("Select EMPID, EMPDETID, MONTHYEAR, ETOTAL{} From SLC_SALARYCALC_E E INNER JOIN "
                  "SLC_SALARYCALC_D D ON E.SALID = D.SALID Where E.EMPID = {} And E.EMPDETID = {} "
                  "And E.MONTHYEAR = {}",
                  heads->columns, reads_->Employee(request.empId), reads_->DetailRow(request.empDetId),
                  request.monthYear));
  if (salary.Eof()) return;
  constexpr std::size_t kTotal = 3;
  std::size_t column = kTotal + 1;
  for (const Head& head : heads->rows) {
    if (head.field.empty()) throw RuntimeError::SubscriptOutOfRange();
    const double arrears = request.addArrears ? ArrearsOf(request, head) : 0;
    AddNumber(table, "CV{" + head.heading + "}", salary[column++].NumberOr0() + arrears,
              "calculated salary of the month");
  }
  if (!request.grossFromCalc.empty())
    AddNumber(table, "(GrossSalary)", salary[kTotal], "ETOTAL of the calculated salary");
}

std::shared_ptr<const SalaryTokens::Heads> SalaryTokens::HeadsOf(const std::string& formula) {
  return reads_->Once<Heads>("salary heads " + formula, [&] { return ReadHeads(formula); });
}

// All heads, or those that a formula names.
SalaryTokens::Heads SalaryTokens::ReadHeads(const std::string& formula) {
  Recordset rows = reads_->Rows(
      formula.empty()
          ? "Select * From MAS_SALARYHEAD ORDER BY SALHEADING"
          : fmt::format("Select * From MAS_SALARYHEAD WHERE CHARINDEX('{{'+SALHEADING+'}}','{}')>0 ORDER BY "
                        "SALHEADING ",
                        DoubleQuotes(formula)));
  Heads heads;
  for (; !rows.Eof(); rows.MoveNext()) {
    const bool earning = rows["PAYTYPEYN"].NumberOr0() == 0;
    heads.rows.push_back({UpperCase(rows["SALHEADING"].TextOrEmpty()), earning,
                          SalaryField(earning, rows["SALHEADROWID"].ToLong(), highestHead_)});
    if (const std::string& field = heads.rows.back().field; !field.empty()) heads.columns += ", " + field;
  }
  return heads;
}

double SalaryTokens::ArrearsOf(const FormulaRequest& request, const Head& head) {
  const char* tables = head.earning ? "SLC_ARREARS_E ARR, MAS_ARREARS MAS Where "
                                    : "SLC_ARREARS_D ARD, SLC_ARREARS_E ARR, MAS_ARREARS MAS Where "
                                      "ARD.ARREARTRANID=ARR.ARREARTRANID AND ";
  return reads_->Number(
      fmt::format("SELECT SUM(ISNULL({},0)) FROM {}MAS.ARREARID=ARR.ARREARID AND  ARRCALCTYPE <> 1 AND "
                  "EMPID = {} AND EMPDETID = {} AND PAIDFOR = {}",
                  head.field, tables, reads_->Employee(request.empId), reads_->DetailRow(request.empDetId),
                  request.monthYear));
}

}  // namespace ktl
