#include "company/formula_commands.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <iostream>

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

FormulaCommands::FormulaCommands(CLI::App& app)
    : eval_(app.add_subcommand("eval", "Print the value of an expression")),
      formula_(app.add_subcommand("formula", "Show what a formula gives an employee in a month, and why")),
      days_(app.add_subcommand("days", "Show the days, holidays and leave of an employee in a month")) {
  eval_->add_option("EXPRESSION", expression_, "As in KLRound(1234.5, 5, \"n\")")->required();
  for (CLI::App* command : {formula_, days_}) {
    command->add_option("FILE", file_, "The company's file")->required();
    if (command == formula_) command->add_option("FORMULAID", formulaId_, "The formula's number")->required();
    command->add_option("EMPID", empId_, "The employee's number")->required();
    command->add_option("MONTH", month_, "As in Apr/2026")->required();
  }
}

std::optional<int> FormulaCommands::Run(const char* argv0) const {
  if (eval_->parsed()) {
    Eval(argv0);
  } else if (formula_->parsed()) {
    Formula(argv0);
  } else if (days_->parsed()) {
    Days(argv0);
  } else {
    return std::nullopt;
  }
  return 0;
}

void FormulaCommands::Eval(const char* argv0) const {
  RealMachine real(argv0);
  const clsExprEval evaluator([&] { return real.machine().clock.Now(); });
  std::cout << ResultText(evaluator.EvaluateExpression(expression_)) << '\n';
}

void FormulaCommands::Formula(const char* argv0) const {
  CompanySession company(argv0, file_);
  Session& session = company.session();
  const DayRequest days = AskedDays(session, empId_, month_);
  if (!session.data.FnBlnRecExists(
          fmt::format("SELECT FORMULAID FROM MAS_FORMULA WHERE FORMULAID = {}", formulaId_)))
    std::cerr << "There is no formula " << formulaId_ << ".\n";
  std::cout << FormulaReport(session, {.formulaId = formulaId_,
                                       .empId = empId_,
                                       .empDetId = days.empDetId,
                                       .monthYear = days.monthYear,
                                       .period = days.period});
}

void FormulaCommands::Days(const char* argv0) const {
  CompanySession company(argv0, file_);
  std::cout << DaysReport(company.session(), AskedDays(company.session(), empId_, month_));
}

}  // namespace ktl
