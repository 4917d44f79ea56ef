#include <fmt/format.h>
#include <fmt/ostream.h>

#include <CLI/CLI.hpp>
#include <iostream>

#include "common/month_year.h"
#include "company/company.h"
#include "company/company_error.h"
#include "company/formula_commands.h"
#include "company/sql_command.h"
#include "database/connection.h"

namespace {

constexpr int kFailed = 1;
constexpr int kUsage = 2;

struct SqlOptions {
  std::string file;
  std::string statement;
  bool explain = false;
};

void AddCreate(CLI::App& app, ktl::CompanyOptions& options, std::string& asOf) {
  auto* create = app.add_subcommand("create", "Make a company: a sample of employees, or an empty one");
  create->add_option("FILE", options.file, "The company's file")->required();
  create->add_option("--employees", options.sample.employees, "Employees of the sample, 60 or more")
      ->check(CLI::Range(ktl::kAnchors, 1000000));
  create->add_option("--seed", options.sample.seed, "Another seed, another company");
  create->add_option("--loans", options.sample.targets.loans, "Exactly so many advances and loans");
  create->add_option("--emi-target", options.sample.targets.instalments, "Exactly so many instalments");
  create->add_option("--asof", asOf, "The last month with a calculated salary, as in Sep/2026");
  create->add_option("--variant", options.sample.variants, "Another set-up of the same company")
      ->check(CLI::IsMember(ktl::VariantNames()));
  create->add_flag("--empty", options.empty, "Only the required rows and the months");
  create->add_flag("--force", options.force, "Replace an existing file");
  create->add_option("--settings", options.settingsFile, "Let this settings store name the company");
}

void AddSql(CLI::App& app, SqlOptions& options) {
  auto* sql = app.add_subcommand("sql", "Run one statement, or each line of the standard input");
  sql->add_option("FILE", options.file, "The company's file")->required();
  sql->add_option("STATEMENT", options.statement, "A Transact-SQL text");
  sql->add_flag("--explain", options.explain, "Show what the database gets instead of running it");
}

void AddUse(CLI::App& app, ktl::CompanyOptions& options) {
  auto* use = app.add_subcommand("use", "Let a settings store name an existing company");
  use->add_option("FILE", options.file, "The company's file")->required();
  use->add_option("--settings", options.settingsFile, "The settings store")->required();
}

void AddFormulas(CLI::App& app, ktl::FormulaArguments& arguments, std::string& expression) {
  auto* eval = app.add_subcommand("eval", "Print the value of an expression");
  eval->add_option("EXPRESSION", expression, "As in KLRound(1234.5, 5, \"n\")")->required();
  auto* formula = app.add_subcommand("formula", "Show what a formula gives an employee in a month, and why");
  auto* days = app.add_subcommand("days", "Show the days, holidays and leave of an employee in a month");
  for (CLI::App* command : {formula, days}) {
    command->add_option("FILE", arguments.file, "The company's file")->required();
    if (command == formula)
      command->add_option("FORMULAID", arguments.formulaId, "The formula's number")->required();
    command->add_option("EMPID", arguments.empId, "The employee's number")->required();
    command->add_option("MONTH", arguments.month, "As in Apr/2026")->required();
  }
}

int Use(const ktl::CompanyOptions& options) {
  ktl::Connection connection;
  ktl::OpenCompany(connection, options.file.string());  // a file that is no company is not named
  ktl::WriteSettings(*options.settingsFile, options.file);
  return 0;
}

int Create(ktl::CompanyOptions& options, const std::string& asOf) {
  if (!asOf.empty()) {
    const auto month = ktl::FnStrCorrectMonth(asOf);
    options.sample.salaryTo =
        month.empty() ? 0 : static_cast<int>(ktl::clsDateHandle::FnLngFindMonthValue(month));
    if (options.sample.salaryTo < ktl::kFirstMonth || options.sample.salaryTo > ktl::kLastMonth) {
      fmt::print(stderr, "--asof: a month from Apr/2024 to Mar/2027 is wanted\n");
      return kUsage;
    }
  }
  for (const auto& sum : ktl::CreateCompany(options)) {
    fmt::print("{:<26} {:>9} {:016x}\n", sum.table, sum.rows, sum.checksum);
  }
  return 0;
}

int Sql(const SqlOptions& options) {
  ktl::Connection connection;
  ktl::OpenCompany(connection, options.file);
  const auto run = [&](const std::string& statement) {
    if (options.explain) {
      std::cout << connection.Explain(statement) << '\n';
    } else {
      ktl::RunStatement(connection, statement, std::cout);
    }
  };
  if (!options.statement.empty()) {
    run(options.statement);
    return 0;
  }
  for (std::string line; std::getline(std::cin, line);) {
    if (!line.empty()) run(line);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Makes companies, and asks them", "KTLCompany"};
  app.require_subcommand(1);
  ktl::CompanyOptions companyOptions;
  std::string asOf;
  SqlOptions sqlOptions;
  std::string expression;
  ktl::FormulaArguments formulaArguments;
  AddCreate(app, companyOptions, asOf);
  AddUse(app, companyOptions);
  AddSql(app, sqlOptions);
  AddFormulas(app, formulaArguments, expression);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kUsage;
  }
  try {
    if (app.got_subcommand("create")) return Create(companyOptions, asOf);
    if (app.got_subcommand("use")) return Use(companyOptions);
    if (app.got_subcommand("sql")) return Sql(sqlOptions);
    if (app.got_subcommand("eval")) ktl::PrintExpression(argv[0], expression);
    if (app.got_subcommand("formula")) ktl::PrintFormula(argv[0], formulaArguments);
    if (app.got_subcommand("days")) ktl::PrintDays(argv[0], formulaArguments);
    return 0;
  } catch (const ktl::RuntimeError& error) {
    fmt::print(stderr, "{}\n", error.description());
  } catch (const std::exception& error) {
    fmt::print(stderr, "{}\n", error.what());
  }
  return kFailed;
}
