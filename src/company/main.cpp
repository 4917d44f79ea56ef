#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <map>
#include <string_view>

#include "common/month_year.h"
#include "company/backup.h"
#include "company/check_command.h"
#include "company/company.h"
#include "company/company_copy.h"
#include "company/company_error.h"
#include "company/formula_commands.h"
#include "company/server_schema.h"
#include "company/sql_command.h"
#include "database/connection.h"
#include "machine/files.h"

namespace {

constexpr int kFailed = 1;
constexpr int kUsage = 2;

int Complain(std::string_view why, int status) {
  std::cout.flush();
  std::cerr << why << '\n';
  return status;
}

struct SqlOptions {
  std::string file;
  std::string statement;
  bool explain = false;
};

constexpr const char* kConnection = "A connection string (\"Provider=MariaDB;..\"), or @FILE that holds one";
constexpr const char* kCompany = "The company: its file, a connection string, or @FILE that holds one";

bool IsWatched() { return ::isatty(STDERR_FILENO) != 0; }

// One line that counts, where a person looks on.
const ktl::CopyWatch kWatch{[](const std::string& table, std::int64_t rows) {
                              if (IsWatched())
                                std::cerr << fmt::format("\r{:<28}{:>10} rows", table, rows) << std::flush;
                            },
                            [](const std::string& what) { std::cout << what << std::endl; }};

void EndProgress() {
  if (IsWatched()) std::cerr << '\r' << std::string(44, ' ') << '\r' << std::flush;
}

void AddCreate(CLI::App& app, ktl::CompanyOptions& options, std::string& asOf, bool& sums) {
  auto* create = app.add_subcommand("create", "Make a company: a sample of employees, or an empty one");
  auto* file = create->add_option("FILE", options.file, "The company's file");
  auto* server = create->add_option("--server", options.server, kConnection)->excludes(file);
  create->callback([file, server] {
    if (file->count() + server->count() == 0) throw CLI::RequiredError("FILE or --server");
  });
  create->add_option("--employees", options.sample.employees, "Employees of the sample, 60 or more")
      ->check(CLI::Range(ktl::kAnchors, 1000000));
  create->add_option("--seed", options.sample.seed, "Another seed, another company");
  create->add_option("--loans", options.sample.targets.loans, "Exactly so many advances and loans");
  create->add_option("--emi-target", options.sample.targets.instalments, "Exactly so many instalments");
  create->add_option("--asof", asOf, "The last month with a calculated salary, as in Sep/2026");
  create->add_option("--variant", options.sample.variants, "Another set-up of the same company")
      ->check(CLI::IsMember(ktl::VariantNames()));
  create->add_flag("--empty", options.empty, "Only the required rows and the months");
  create->add_flag("--force", options.force, "Replace an existing company");
  create->add_flag("--sums", sums, "Print rows and checksum of every table");
  create->add_option("--settings", options.settingsFile, "Let this settings store name the company");
}

void AddSql(CLI::App& app, SqlOptions& options) {
  auto* sql = app.add_subcommand("sql", "Run one statement, or each line of the standard input");
  sql->add_option("COMPANY", options.file, kCompany)->required();
  sql->add_option("STATEMENT", options.statement, "A Transact-SQL text");
  sql->add_flag("--explain", options.explain, "Show what the database gets instead of running it");
}

void AddUse(CLI::App& app, ktl::CompanyOptions& options) {
  auto* use = app.add_subcommand("use", "Let a settings store name an existing company");
  use->add_option("COMPANY", options.server, kCompany)->required();
  use->add_option("--settings", options.settingsFile, "The settings store")->required();
}

void AddCopies(CLI::App& app, ktl::CopyOptions& options) {
  auto* backup = app.add_subcommand("backup", "Copy a company, also while programs work on it");
  auto* restore = app.add_subcommand("restore", "Make a company of such a copy");
  backup->add_option("FROM", options.from, "The company's file")->required();
  backup->add_option("TO", options.to, "The copy")->required();
  restore->add_option("FROM", options.from, "The copy")->required();
  restore->add_option("TO", options.to, "The company's file")->required();
  for (CLI::App* command : {backup, restore})
    command->add_flag("--force", options.force, "Replace an existing file that no program has open");
}

void AddFormulas(CLI::App& app, ktl::FormulaArguments& arguments, std::string& expression) {
  auto* eval = app.add_subcommand("eval", "Print the value of an expression");
  eval->add_option("EXPRESSION", expression, "As in KLRound(1234.5, 5, \"n\")")->required();
  auto* formula = app.add_subcommand("formula", "Show what a formula gives an employee in a month, and why");
  auto* days = app.add_subcommand("days", "Show the days, holidays and leave of an employee in a month");
  for (CLI::App* command : {formula, days}) {
    command->add_option("COMPANY", arguments.file, kCompany)->required();
    if (command == formula)
      command->add_option("FORMULAID", arguments.formulaId, "The formula's number")->required();
    command->add_option("EMPID", arguments.empId, "The employee's number")->required();
    command->add_option("MONTH", arguments.month, "As in Apr/2026")->required();
  }
}

const std::map<std::string, ktl::ServerKind> kServers{{"mariadb", ktl::ServerKind::MariaDb},
                                                      {"sqlserver", ktl::ServerKind::SqlServer}};

void AddSchema(CLI::App& app, ktl::ServerKind& server) {
  auto* schema = app.add_subcommand("schema", "Print the tables and objects of a company for a server");
  schema->add_option("SERVER", server, "mariadb or sqlserver")
      ->required()
      ->transform(CLI::CheckedTransformer(kServers, CLI::ignore_case));
}

void AddCheck(CLI::App& app, std::vector<std::string>& files) {
  auto* check = app.add_subcommand("check", "Tell which statements SQL Server would refuse");
  check->add_option("FILE", files, "A statement log, or texts one a line; none: the standard input");
}

int Use(const ktl::CompanyOptions& options) {
  ktl::Connection connection;
  ktl::OpenCompany(connection, options.server);  // what is no company is not named
  ktl::WriteSettings(*options.settingsFile, ktl::AddressOf(options.server));
  return 0;
}

struct MoveOptions {
  std::string from, to;
  bool force = false;
};

void AddCopy(CLI::App& app, MoveOptions& options) {
  auto* copy = app.add_subcommand("copy", "Make a company of another one, between files and servers");
  copy->add_option("FROM", options.from, kCompany)->required();
  copy->add_option("TO", options.to, kCompany)->required();
  copy->add_flag("--force", options.force, "Replace a company that is there");
}

int Copy(const MoveOptions& options) {
  const ktl::CompanyCopy copy{ktl::AddressOf(options.from), ktl::AddressOf(options.to), options.force,
                              kWatch};
  const ktl::CopiedCompany done = ktl::CopyCompany(copy);
  EndProgress();
  for (const auto& name : done.leftOut)
    std::cout << fmt::format("Left out, no part of a company: {}\n", name);
  std::cout << fmt::format("Copied {} to {}: {} tables, {} rows, counts and sums compared.\n",
                           copy.from.shown, copy.to.shown, done.tables, done.rows);
  return 0;
}

std::string FullName(const std::filesystem::path& file) {
  return std::filesystem::absolute(file).lexically_normal().string();
}

int Copied(const ktl::CopyOptions& options) {
  std::cout << fmt::format("Made {} from {}, whole and checked.\n", FullName(options.to),
                           FullName(options.from));
  return 0;
}

// What a person sees of a company that has been made.
void TellMade(const ktl::CompanyOptions& options, const std::vector<ktl::TableSum>& sums) {
  const auto rows = [&sums](std::string_view table) {
    const auto found = std::ranges::find(sums, table, &ktl::TableSum::table);
    return found == sums.end() ? std::int64_t{0} : found->rows;
  };
  const std::string file =
      options.server.empty() ? FullName(options.file) : ktl::AddressOf(options.server).shown;
  if (options.empty) {
    std::cout << fmt::format("Made {}: an empty company.\n", file);
  } else {
    std::cout << fmt::format("Made {}: a sample of {} employees, {} advances and loans, {} instalments.\n",
                             file, rows("MAS_EMPLOYEE"), rows("INS_ADVLOAN"), rows("INS_EMIDETAIL"));
  }
  if (options.settingsFile) {
    std::cout << fmt::format("{} names it.\n", FullName(*options.settingsFile));
  }
}

int Create(ktl::CompanyOptions& options, const std::string& asOf, bool printSums) {
  if (!asOf.empty()) {
    const auto month = ktl::FnStrCorrectMonth(asOf);
    options.sample.salaryTo =
        month.empty() ? 0 : static_cast<int>(ktl::clsDateHandle::FnLngFindMonthValue(month));
    if (options.sample.salaryTo < ktl::kFirstMonth || options.sample.salaryTo > ktl::kLastMonth) {
      return Complain("--asof: a month from Apr/2024 to Mar/2027 is wanted", kUsage);
    }
  }
  options.watch = kWatch;
  const std::vector<ktl::TableSum> sums =
      options.server.empty() ? ktl::CreateCompany(options) : ktl::CreateOnServer(options);
  if (!options.server.empty()) EndProgress();
  TellMade(options, sums);
  if (!printSums) return 0;
  for (const auto& sum : sums) {
    std::cout << fmt::format("{:<26} {:>9} {:016x}\n", sum.table, sum.rows, sum.checksum);
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
  std::string line;
  for (std::size_t number = 1; std::getline(std::cin, line); ++number) {
    try {
      if (!line.empty()) run(line);
    } catch (const ktl::RuntimeError& error) {
      std::cout.flush();
      throw ktl::CompanyError(fmt::format("line {}: {}", number, error.description()));
    }
  }
  return 0;
}

// A result that nobody got is a failure.
int Written(int status) {
  if (std::cout.flush()) return status;
  return Complain("The result cannot be written.", kFailed);
}

// "" when the first argument is a command or an option.
std::string UnknownCommand(const CLI::App& app, int argc, char** argv) {
  const std::string word = argc > 1 ? argv[1] : "-";
  if (word.starts_with('-')) return "";
  std::string names;
  for (const CLI::App* command : app.get_subcommands({})) {
    if (command->get_name() == word) return "";
    names += (names.empty() ? "" : ", ") + command->get_name();
  }
  return fmt::format("There is no command \"{}\"; the commands are {}.", word, names);
}

}  // namespace

int main(int argc, char** argv) {
  ktl::KeepNewFilesPrivate();
  CLI::App app{"Makes companies, and asks them", "KTLCompany"};
  app.set_version_flag("--version", "KTLCompany " KTL_VERSION);
  app.require_subcommand(1);
  ktl::CompanyOptions companyOptions;
  std::string asOf;
  bool sums = false;
  ktl::CopyOptions copyOptions;
  SqlOptions sqlOptions;
  std::string expression;
  ktl::FormulaArguments formulaArguments;
  AddCreate(app, companyOptions, asOf, sums);
  AddUse(app, companyOptions);
  AddCopies(app, copyOptions);
  AddSql(app, sqlOptions);
  AddFormulas(app, formulaArguments, expression);
  ktl::ServerKind server = ktl::ServerKind::MariaDb;
  AddSchema(app, server);
  std::vector<std::string> checked;
  AddCheck(app, checked);
  MoveOptions moveOptions;
  AddCopy(app, moveOptions);
  if (const std::string unknown = UnknownCommand(app, argc, argv); !unknown.empty()) {
    return Complain(unknown, kUsage);
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kUsage;
  }
  try {
    if (app.got_subcommand("create")) return Written(Create(companyOptions, asOf, sums));
    if (app.got_subcommand("use")) return Use(companyOptions);
    if (app.got_subcommand("backup")) {
      ktl::BackUpCompany(copyOptions);
      return Written(Copied(copyOptions));
    }
    if (app.got_subcommand("restore")) {
      ktl::RestoreCompany(copyOptions);
      return Written(Copied(copyOptions));
    }
    if (app.got_subcommand("sql")) return Written(Sql(sqlOptions));
    if (app.got_subcommand("copy")) return Written(Copy(moveOptions));
    if (app.got_subcommand("check")) return Written(ktl::CheckStatements(checked, std::cout) ? 0 : kFailed);
    if (app.got_subcommand("schema")) std::cout << ktl::ServerScript(server);
    if (app.got_subcommand("eval")) ktl::PrintExpression(argv[0], expression);
    if (app.got_subcommand("formula")) ktl::PrintFormula(argv[0], formulaArguments);
    if (app.got_subcommand("days")) ktl::PrintDays(argv[0], formulaArguments);
    return Written(0);
  } catch (const ktl::RuntimeError& error) {
    return Complain(error.description(), kFailed);
  } catch (const std::exception& error) {
    return Complain(error.what(), kFailed);
  }
}
