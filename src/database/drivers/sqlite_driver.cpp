#include "database/drivers/sqlite_driver.h"

#include <fmt/format.h>

#include <cmath>

#include "database/drivers/sqlite_writer.h"
#include "database/statement_twin.h"
#include "database/stored_date.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr std::size_t kMostPrograms = 256;
constexpr std::size_t kLongestKeptText = 8192;

// The history of month locks is the database's own: who turned which lock, on which machine, and when.
constexpr const char* kMonthLockTrigger =
    "CREATE TEMP TRIGGER KTL_MONTHLOCK AFTER UPDATE OF LOCKEDYN ON main.MAS_MONTHYEAR "
    "WHEN NEW.LOCKEDYN IS NOT OLD.LOCKEDYN BEGIN "
    "INSERT INTO SEC_MONTHLOCKHISTORY (MONTHYEAR, LOCKEDYN, UNAME, CHANGEDDATE, KTLUSERID) "
    "SELECT NEW.MONTHYEAR, NEW.LOCKEDYN, KL_HOST_NAME(), substr(KL_NOW() || ' 00:00:00', 1, 19), "
    "(SELECT USERID FROM SEC_USERLIST WHERE USERNAME = KL_USER_NAME()); END";

DatabaseError WrongType(const std::string& column) {
  return DatabaseError(fmt::format("The value does not fit the field {}.", column), kWrongTypeError);
}

double NumberFor(const Assignment& assignment) {
  const Value& value = assignment.value;
  double number = 0;
  if (value.IsText()) {
    const auto parsed = ParseNumber(value.text());
    if (!parsed) throw WrongType(assignment.column);
    number = *parsed;
  } else if (value.IsDate()) {
    throw WrongType(assignment.column);
  } else if (!value.IsEmpty()) {
    number = value.IsBoolean() ? (value.boolean() ? 1 : 0) : value.ToDouble();
  }
  if (!std::isfinite(number)) throw WrongType(assignment.column);
  return number;
}

Value DateFor(const Assignment& assignment) {
  const Value& value = assignment.value;
  if (value.IsDate()) return value;
  if (value.IsEmpty()) return Null{};
  const auto date = value.IsText() ? ParseDateLiteral(value.text()) : std::nullopt;
  if (!date) throw WrongType(assignment.column);
  return *date;
}

void Bind(SqliteStatement& statement, std::span<const Value> numbers) {
  std::size_t parameter = 0;
  for (const Value& number : numbers) statement.Bind(parameter++, number);
}

}  // namespace

SqliteDriver::SqliteDriver(SqliteDatabase database, FileKind kind, const ConnectionSettings& settings)
    : database_(std::move(database)),
      client_(settings.client),
      host_{database_, client_, {}},
      programs_(kMostPrograms) {
  RegisterFunctions(host_);
  database_.SetBusyTimeout(settings.commandTimeout);
  database_.SetOnWait([this, ask = settings.onWait](std::chrono::milliseconds waited) {
    return !ask || ask({waited, database_.TotalChanges() == durableChanges_});
  });
  // A statement that takes long tells of itself as one that waits for nothing.
  if (settings.onWait)
    database_.SetOnWork([tell = settings.onWait] { tell({.waited = {}, .mayGiveUp = false}); });
  if (kind == FileKind::Company) database_.Run(kMonthLockTrigger);
}

SqliteDriver::~SqliteDriver() {
  KeepStatistics();
  try {
    MakeDurable();
  } catch (const std::exception&) {
    // Whoever was told that something is done has had it flushed before.
  }
}

// The planner's figures are brought up to date when the work is done, not when the next one begins: those of
// tables that have none or have grown many times. So many rows of an index are enough for figures of the
// right size; with a thousand they are wrong by 15 to 40 times.
void SqliteDriver::KeepStatistics() noexcept {
  try {
    if (InTransaction()) Rollback();
    database_.SetBusyTimeout(0);
    database_.RunScript("PRAGMA analysis_limit = 100000; PRAGMA optimize;");
  } catch (const std::exception&) {
    // Another workstation is writing: it will do the same at its own end.
  }
}

SqliteDriver::ProgramPtr SqliteDriver::SharedProgram(bool updatable) {
  std::string marked;
  if (updatable) marked = shared_.sql + '\n';
  const std::string& key = updatable ? marked : shared_.sql;
  if (const auto* kept = programs_.Find(key)) return *kept;
  ProgramPtr program;
  try {
    program = std::make_shared<const tsql::Program>(
        SqliteWriter(shared_.sql).Translate(updatable, static_cast<int>(shared_.numbers.size())));
    const auto kind = program->front().kind;
    const bool plain = kind == tsql::StepKind::Rows || kind == tsql::StepKind::Change;
    if (program->size() > 1 || !plain) program = nullptr;
  } catch (const DatabaseError&) {
    // Read with its numbers in place, the text tells why it cannot be.
  }
  if (key.size() <= kLongestKeptText) programs_.Keep(key, program);
  return program;
}

SqliteDriver::ProgramPtr SqliteDriver::ProgramOf(std::string_view sql, bool updatable) {
  std::string key(sql);
  if (updatable) key += '\n';
  if (const auto* kept = programs_.Find(key)) return *kept;
  auto program = std::make_shared<const tsql::Program>(SqliteWriter(sql).Translate(updatable));
  if (key.size() <= kLongestKeptText) programs_.Keep(key, program);
  return program;
}

void SqliteDriver::RunText(std::string_view sql, bool updatable, Run& run) {
  host_.variables.clear();
  ShareNumbers(sql, shared_);
  ProgramPtr program;
  if (!shared_.numbers.empty()) program = SharedProgram(updatable);
  if (program)
    run.numbers = shared_.numbers;
  else
    program = ProgramOf(sql, updatable);
  RunProgram(*program, run);
}

ResultSet SqliteDriver::Query(std::string_view sql, Fetch fetch, bool updatable) {
  Run run{.fetch = fetch, .keepRows = true};
  RunText(sql, updatable, run);
  return std::move(run.result);
}

std::int64_t SqliteDriver::Execute(std::string_view sql) {
  Run run;
  RunText(sql, false, run);
  return run.rows;
}

void SqliteDriver::RunProgram(const tsql::Program& program, Run& run) {
  for (const auto& step : program) RunStep(step, run);
}

// The first query of a batch gives its rows.
void SqliteDriver::RunStep(const tsql::Step& step, Run& run) {
  switch (step.kind) {
    case tsql::StepKind::Rows:
      if (run.keepRows && !run.answered) {
        run.result = ReadRows(step, run);
        run.answered = true;
      } else {
        run.rows += CountRows(step.sql, run.numbers);
      }
      break;
    case tsql::StepKind::Change: {
      const auto before = database_.TotalChanges();
      CountRows(step.sql, run.numbers);
      run.rows += database_.ChangesSince(before);
      break;
    }
    case tsql::StepKind::Assign:
      CountRows(step.sql, run.numbers);
      break;
    case tsql::StepKind::Branch:
      RunProgram(database_.Number(step.sql) != 0 ? step.then : step.otherwise, run);
      break;
    case tsql::StepKind::Call:
      Call(step);
      break;
  }
}

std::int64_t SqliteDriver::CountRows(const std::string& sql, Numbers numbers) {
  SqliteDatabase::Lease statement(database_, sql);
  Bind(*statement, numbers);
  std::int64_t rows = 0;
  while (statement->Step()) ++rows;
  return rows;
}

ResultSet SqliteDriver::ReadRows(const tsql::Step& step, const Run& run) {
  SqliteDatabase::Lease statement(database_, step.sql);
  Bind(*statement, run.numbers);
  // A changed schema shows in the columns only after the first step.
  bool more = run.fetch != Fetch::NoRows && statement->Step();
  const std::size_t first = step.baseTable.empty() ? 0 : 1, count = statement->ColumnCount();
  ResultSet result;
  result.baseTable = step.baseTable;
  std::vector<bool> dates(count);
  for (std::size_t column = first; column < count; ++column) {
    dates[column] = statement->IsDeclaredDate(column) || step.TellsDate(column, count);
    result.columns.push_back(statement->ColumnName(column));
  }
  for (; more; more = run.fetch == Fetch::AllRows && statement->Step()) {
    auto& row = result.rows.emplace_back();
    row.reserve(count - first);
    for (std::size_t column = first; column < count; ++column)
      row.push_back(statement->Column(column, dates[column]));
    if (first > 0) result.keys.emplace_back(statement->Integer(0));
  }
  return result;
}

std::string SqliteDriver::Explain(std::string_view sql) {
  std::string text;
  const auto tell = [&text](const tsql::Program& program, const std::string& indent,
                            const auto& self) -> void {
    for (const auto& step : program) {
      if (!text.empty()) text += '\n';
      text += indent + (step.kind == tsql::StepKind::Call ? "call " + step.name : step.sql);
      self(step.then, indent + "  ", self);
      self(step.otherwise, indent + "  else: ", self);
    }
  };
  tell(*ProgramOf(sql, false), "", tell);
  return text;
}

std::string_view SqliteDriver::Choose(const StatementTwin& twin) {
  return twin.setup == nullptr || MakeReady(twin) ? twin.embedded : twin.said;
}

// A company made by an earlier release gets what the twin needs when it is needed first. Inside a transaction
// nothing is made, since a rollback would take it away again.
bool SqliteDriver::MakeReady(const StatementTwin& twin) {
  if (twinTables_.contains(twin.table)) return true;
  const auto isThere = [&] {
    SqliteDatabase::Lease table(database_,
                                "SELECT 1 FROM sqlite_master WHERE type IN ('table', 'view') AND name = ?1");
    table->Bind(0, Value(twin.table));
    return table->Step();
  };
  if (!isThere()) {
    if (InTransaction()) return false;
    Begin();
    try {
      // Another workstation may have been faster.
      if (!isThere()) database_.RunScript(twin.setup);
      Commit();
    } catch (const DatabaseError&) {
      if (InTransaction()) Rollback();
      return false;
    }
  }
  twinTables_.emplace(twin.table);
  return true;
}

const SqliteDriver::Fields& SqliteDriver::FieldsOf(const std::string& table) {
  if (const auto found = fields_.find(table); found != fields_.end()) return found->second;
  Fields fields;
  SqliteDatabase::Lease columns(database_, "SELECT name, type FROM pragma_table_info(?1)");
  columns->Bind(0, table);
  while (columns->Step()) {
    const std::string type = columns->Column(1).TextOrEmpty();
    fields[columns->Column(0).text()] = type == "DATETIME"  ? FieldKind::Date
                                        : type == "INTEGER" ? FieldKind::Integer
                                        : type == "REAL"    ? FieldKind::Real
                                                            : FieldKind::Text;
  }
  return fields_[table] = std::move(fields);
}

Value SqliteDriver::Fitted(const Assignment& assignment, const Fields& fields) const {
  const auto field = fields.find(assignment.column);
  if (field == fields.end())
    throw DatabaseError(fmt::format("There is no field {}.", assignment.column), kNoSuchFieldError);
  if (assignment.value.IsNull()) return Null{};
  switch (field->second) {
    case FieldKind::Date:
      return DateFor(assignment);
    case FieldKind::Real:
      return NumberFor(assignment);
    case FieldKind::Integer: {
      if (assignment.value.IsInteger()) return assignment.value;
      const double number = RoundHalfEven(NumberFor(assignment));
      if (std::fabs(number) >= 9e18) throw WrongType(assignment.column);
      return static_cast<long long>(number);
    }
    case FieldKind::Text:
      break;
  }
  return assignment.value.IsEmpty() ? Value("") : Value(assignment.value.ToText());
}

RowKey SqliteDriver::InsertRow(const std::string& table, const std::vector<Assignment>& values) {
  const Fields& fields = FieldsOf(table);
  std::string columns, marks;
  for (const auto& assignment : values) {
    columns += (columns.empty() ? "[" : ", [") + assignment.column + ']';
    marks += marks.empty() ? "?" : ", ?";
  }
  SqliteDatabase::Lease insert(
      database_, values.empty() ? fmt::format("INSERT INTO [{}] DEFAULT VALUES", table)
                                : "INSERT INTO [" + table + "] (" + columns + ") VALUES (" + marks + ")");
  for (std::size_t i = 0; i < values.size(); ++i) insert->Bind(i, Fitted(values[i], fields));
  insert->Step();
  return database_.LastRowId();
}

void SqliteDriver::UpdateRow(const std::string& table, const RowKey& key,
                             const std::vector<Assignment>& values) {
  if (values.empty()) return;
  const Fields& fields = FieldsOf(table);
  std::string columns;
  for (const auto& assignment : values)
    columns += (columns.empty() ? "[" : ", [") + assignment.column + "] = ?";
  SqliteDatabase::Lease update(database_, "UPDATE [" + table + "] SET " + columns + " WHERE rowid = ?");
  for (std::size_t i = 0; i < values.size(); ++i) update->Bind(i, Fitted(values[i], fields));
  update->Bind(values.size(), std::any_cast<std::int64_t>(key));
  const auto before = database_.TotalChanges();
  update->Step();
  if (database_.ChangesSince(before) == 0) throw DatabaseError(kRowGoneText, kRowGoneError);
}

void SqliteDriver::Begin() {
  if (InTransaction()) throw DatabaseError("A transaction is under way already.");
  database_.Run("BEGIN IMMEDIATE");
}

void SqliteDriver::Commit() {
  if (!InTransaction()) throw DatabaseError("No transaction is active.");
  database_.Run("COMMIT");
}

void SqliteDriver::Rollback() {
  if (!InTransaction()) throw DatabaseError("No transaction is active.");
  database_.Run("ROLLBACK");
}

void SqliteDriver::MakeDurable() {
  const auto changes = database_.TotalChanges();
  if (changes == durableChanges_) return;
  database_.FlushLog();
  if (!InTransaction()) durableChanges_ = changes;  // an open one is in the log at its commit
}

}  // namespace ktl
