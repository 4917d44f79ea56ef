#include "database/drivers/sqlite_driver.h"

#include <fmt/format.h>

#include "database/drivers/sqlite_writer.h"
#include "database/statement_twin.h"

namespace ktl {

namespace {

// The history of month locks is the database's own: who turned which lock, on which machine, and when.
constexpr const char* kMonthLockTrigger =
    "CREATE TEMP TRIGGER KTL_MONTHLOCK AFTER UPDATE OF LOCKEDYN ON main.MAS_MONTHYEAR "
    "WHEN NEW.LOCKEDYN IS NOT OLD.LOCKEDYN BEGIN "
    "INSERT INTO SEC_MONTHLOCKHISTORY (MONTHYEAR, LOCKEDYN, UNAME, CHANGEDDATE, KTLUSERID) "
    "SELECT NEW.MONTHYEAR, NEW.LOCKEDYN, KL_HOST_NAME(), substr(KL_NOW() || ' 00:00:00', 1, 19), "
    "(SELECT USERID FROM SEC_USERLIST WHERE USERNAME = KL_USER_NAME()); END";

void Bind(SqliteStatement& statement, std::span<const Value> numbers) {
  std::size_t parameter = 0;
  for (const Value& number : numbers) statement.Bind(parameter++, number);
}

}  // namespace

SqliteDriver::SqliteDriver(SqliteDatabase database, FileKind kind, const ConnectionSettings& settings)
    : database_(std::move(database)), client_(settings.client), host_{database_, client_, {}} {
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

tsql::Program SqliteDriver::Translate(std::string_view sql, bool updatable, int parameters) const {
  return SqliteWriter(sql).Translate(updatable, parameters);
}

std::int64_t SqliteDriver::CountChanges(const tsql::Step& step, Numbers numbers) {
  const auto before = database_.TotalChanges();
  CountRows(step, numbers);
  return database_.ChangesSince(before);
}

bool SqliteDriver::Decide(const tsql::Step& branch) { return database_.Number(branch.sql) != 0; }

std::int64_t SqliteDriver::CountRows(const tsql::Step& step, Numbers numbers) {
  SqliteDatabase::Lease statement(database_, step.sql);
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

const FieldKinds& SqliteDriver::FieldsOf(const std::string& table) {
  if (const auto found = fields_.find(table); found != fields_.end()) return found->second;
  FieldKinds fields;
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

RowKey SqliteDriver::InsertRow(const std::string& table, const std::vector<Assignment>& values) {
  const FieldKinds& fields = FieldsOf(table);
  std::string columns, marks;
  for (const auto& assignment : values) {
    columns += (columns.empty() ? "[" : ", [") + assignment.column + ']';
    marks += marks.empty() ? "?" : ", ?";
  }
  SqliteDatabase::Lease insert(
      database_, values.empty() ? fmt::format("INSERT INTO [{}] DEFAULT VALUES", table)
                                : "INSERT INTO [" + table + "] (" + columns + ") VALUES (" + marks + ")");
  for (std::size_t i = 0; i < values.size(); ++i) insert->Bind(i, FittedValue(values[i], fields));
  insert->Step();
  return database_.LastRowId();
}

void SqliteDriver::UpdateRow(const std::string& table, const RowKey& key,
                             const std::vector<Assignment>& values) {
  if (values.empty()) return;
  const FieldKinds& fields = FieldsOf(table);
  std::string columns;
  for (const auto& assignment : values)
    columns += (columns.empty() ? "[" : ", [") + assignment.column + "] = ?";
  SqliteDatabase::Lease update(database_, "UPDATE [" + table + "] SET " + columns + " WHERE rowid = ?");
  for (std::size_t i = 0; i < values.size(); ++i) update->Bind(i, FittedValue(values[i], fields));
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
  if (InTransaction()) return;  // it is in the log at its commit
  durableChanges_ = changes;
  database_.EndEvent();
}

}  // namespace ktl
