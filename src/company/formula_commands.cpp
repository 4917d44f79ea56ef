#include "company/formula_commands.h"

#include <fmt/format.h>

#include <iostream>
#include <optional>

#include "common/month_year.h"
#include "company/formula_report.h"
#include "company/sql_command.h"
#include "frame/session.h"
#include "machine/real_machine.h"

namespace ktl {
namespace {

// What the engine would tell a person goes to the standard error.
class PrintingDesk final : public Desk {
 public:
  Answer MsgBox(const MessageBox& box) override {
    std::cerr << box.text << '\n';
    return DefaultAnswerOf(box);
  }
  void ShowModal(Screen&) override {}
};

// A session on a company without a screen. What is written in it is taken back at its end.
class CompanySession final {
 public:
  CompanySession(const char* argv0, const std::string& file)
      : real_(argv0), session_(real_.machine(), desk_) {
    OpenCompany(session_.Cn, file);
    session_.hostName = session_.machine.environment.HostName();
    LoadCaptions(session_);
    LoadOptionSet(session_);
    transaction_.emplace(session_.Cn);
  }
  Session& session() { return session_; }

 private:
  RealMachine real_;
  PrintingDesk desk_;
  Session session_;
  std::optional<Transaction> transaction_;
};

// What was asked about; a month that the company does not have is evaluated all the same.
DayRequest AskedDays(Session& session, long empId, const std::string& monthText) {
  DayRequest request = DayRequestOf(session, empId, monthText);
  if (!session.data.FnBlnRecExists(
          fmt::format("SELECT MONTHYEAR FROM MAS_MONTHYEAR WHERE MONTHYEAR = {}", request.monthYear)))
    std::cerr << FnStrFormatMonthYear(request.monthYear) << " is no month of this company.\n";
  return request;
}

}  // namespace

void PrintExpression(const char* argv0, const std::string& expression) {
  RealMachine real(argv0);
  const clsExprEval evaluator([&] { return real.machine().clock.Now(); });
  std::cout << ResultText(evaluator.EvaluateExpression(expression)) << '\n';
}

void PrintFormula(const char* argv0, const FormulaArguments& arguments) {
  const auto& [file, formulaId, empId, month] = arguments;
  CompanySession company(argv0, file);
  Session& session = company.session();
  const DayRequest days = AskedDays(session, empId, month);
  if (!session.data.FnBlnRecExists(
          fmt::format("SELECT FORMULAID FROM MAS_FORMULA WHERE FORMULAID = {}", formulaId)))
    std::cerr << "There is no formula " << formulaId << ".\n";
  std::cout << FormulaReport(session, {.formulaId = formulaId,
                                       .empId = empId,
                                       .empDetId = days.empDetId,
                                       .monthYear = days.monthYear,
                                       .period = days.period});
}

void PrintDays(const char* argv0, const FormulaArguments& arguments) {
  CompanySession company(argv0, arguments.file);
  std::cout << DaysReport(company.session(), AskedDays(company.session(), arguments.empId, arguments.month));
}

}  // namespace ktl
