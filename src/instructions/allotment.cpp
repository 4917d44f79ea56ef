#include "instructions/allotment.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "common/fetch.h"
#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/service.h"
#include "runtime/errors.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

DayRange PeriodOf(long monthYear) {
  const Date first = *ParseDate("01/" + FnStrFormatMonthYear(monthYear));
  return {first, first.AddMonths(1).AddDays(-1)};
}

// The first formula with the text, whichever of them was chosen.
long FormulaIdOf(Session& session, const std::string& text) {
  return session.data.Guarding(session.Sql("SELECT FORMULAID FROM MAS_FORMULA WHERE FORMULA='{}'", text))
      .ToLong();
}

}  // namespace

std::vector<TickRow> ReadEmployeesToAllot(Session& session) {
  const Statement visible = ClassSecurityCondition(session, " And EMPID ");
  const Statement people = session.FilterYN ? session.Sql("{} Where FILTERYN1 = 1 AND ISNULL(lockyn,0)=0 ",
                                                          Statement(session.EmployeeViewName))
                                            : Statement("MAS_EMPLOYEE Where ISNULL(lockyn,0)=0 ");
  const char* const number = session.options.EMPREFNOYN ? "REFNO" : "EMPID";
  std::vector<TickRow> employees;
  Recordset rs(session.Cn,
               session.Sql("Select EMPNAME, EMPID, REFNO From {}{} Order By EMPNAME Asc", people, visible));
  for (; !rs.Eof(); rs.MoveNext()) {
    employees.push_back({fmt::format("[{}]-{}", rs[number].TextOrEmpty(), rs["EMPNAME"].TextOrEmpty()),
                         rs["EMPID"].TextOrEmpty()});
  }
  return employees;
}

std::vector<ListRow> ReadNamesToAllot(Session& session, InstructionType type) {
  std::vector<ListRow> names;
  Recordset rs(session.Cn, session.Sql("Select SINAME From INS_MASTER Where SITYPE = {} AND SEPPIYN <> 1 "
                                       "Order By SINAME",
                                       type));
  for (; !rs.Eof(); rs.MoveNext()) {
    const std::string name = rs["SINAME"].TextOrEmpty();
    names.push_back({name, name});
  }
  return names;
}

bool IsNameListed(Session& session, InstructionType type, std::string_view name) {
  const Recordset row(
      session.Cn, session.Sql("Select * From INS_MASTER Where SITYPE = {} And SINAME = '{}'", type, name));
  return !row.Eof() && !IsSet(row["SEPPIYN"]);
}

bool IsAnyLocked(Session& session, const std::vector<long>& employees, long firstMonth,
                 const std::string& lastMonth) {
  if (session.data.Guarding("SELECT COUNT(*) FROM MAS_OPTSETFEATURE WHERE EMPLOCKYN=1").ToLong() <= 0)
    return false;
  return std::ranges::any_of(
      employees, [&](long employee) { return IsEmployeeLocked(session, employee, firstMonth, lastMonth); });
}

std::vector<long> InService(Session& session, const std::vector<long>& employees, const Date& day) {
  std::vector<long> accepted;
  std::ranges::copy_if(employees, std::back_inserter(accepted),
                       [&](long employee) { return ReadService(session, employee).Holds(day); });
  return accepted;
}

AllottedAmounts::AllottedAmounts(Session& session, const Terms& terms, const std::vector<long>& employees,
                                 FormulaRun::ToldOfReckoned reckoned)
    : typed_(terms.typed), factor_(terms.factor) {
  if (!terms.formula.IsSet() || factor_ <= 0) return;
  formula_.emplace(session,
                   FormulaRequest{.formulaId = FormulaIdOf(session, terms.formula.text),
                                  .monthYear = terms.monthYear,
                                  .period = PeriodOf(terms.monthYear)},
                   employees, std::move(reckoned));
}

double AllottedAmounts::Of(long employee, std::string& failure) {
  failure.clear();
  if (!formula_) return typed_;
  double amount = 0;
  try {
    amount = RoundByPattern(formula_->Amount(employee) * factor_, "0.00");
  } catch (const RuntimeError& error) {
    failure = error.description();
  }
  return amount == 0 ? typed_ : amount;
}

std::vector<AllotmentNote> AllotToEach(Session& session, const std::vector<long>& employees,
                                       AllottedAmounts& amounts,
                                       const std::function<void(long employee, double amount)>& give,
                                       const std::function<void()>& done) {
  std::vector<AllotmentNote> notes;
  std::string failure;
  for (const long employee : employees) {
    try {
      const double amount = amounts.Of(employee, failure);
      if (amount > 0) {
        Transaction whole(session.Cn);
        give(employee, amount);
        whole.Commit();
        if (!failure.empty())
          notes.push_back({employee, "the typed amount was given, since the formula failed: " + failure});
      } else {
        notes.push_back({employee, failure.empty() ? "the amount is not above 0" : failure});
      }
    } catch (const RuntimeError& error) {
      notes.push_back({employee, fmt::format("{} {}", error.number(), error.description())});
    }
    done();
  }
  return notes;
}

}  // namespace ktl
