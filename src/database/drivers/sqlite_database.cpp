#include "database/drivers/sqlite_database.h"

#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <thread>
#include <utility>

#include "database/stored_date.h"

namespace ktl {

namespace {

constexpr std::size_t kMostStatements = 128;
constexpr std::size_t kLongestKeptText = 8192;
constexpr std::chrono::milliseconds kFirstPause{1};  // most writers are done in a moment
constexpr std::chrono::milliseconds kPause{25};
constexpr int kShortPauses = 10;
constexpr std::chrono::milliseconds kBetweenTellings{60};
constexpr int kBloomFilters = 0x00080000;  // among the planner's optimizations
// Commits of one event touch the same pages again and again, months apart: a log that holds many of them
// carries each page over once. Between events it is short, so that the next one, however small, never waits
// for a long one; and its length is bounded, for those who read meanwhile and for the disk.
constexpr int kLogPages = 1000;
constexpr int kMostLogPages = 16000;

void CarryLogOver(sqlite3* database, const char* name, int& pages) noexcept {
  sqlite3_wal_checkpoint_v2(database, name, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
  pages = 0;
}

std::string_view ColumnText(sqlite3_stmt* statement, int column) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  return {text == nullptr ? "" : text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

long NumberOfError(int code, const std::string& message) {
  switch (code & 0xFF) {
    case SQLITE_CONSTRAINT:
      return kIntegrityError;
    case SQLITE_ERROR:
      return message.starts_with("no such table") ? kNoSuchTableError : kStatementError;
    default:
      return kGenericDatabaseError;
  }
}

double Finite(double value) {
  if (!std::isfinite(value)) throw DatabaseError("The amount is beyond all bounds.");
  return value;
}

}  // namespace

void CheckSqlite(int code, sqlite3* database) {
  switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      throw DatabaseError(kLockedText);
    default:
      break;
  }
  const std::string message = sqlite3_errmsg(database);
  throw DatabaseError(message, NumberOfError(code, message));
}

void SqliteStatement::Finalizer::operator()(sqlite3_stmt* statement) const noexcept {
  sqlite3_finalize(statement);
}

SqliteStatement::SqliteStatement(sqlite3* database, std::string_view sql) {
  sqlite3_stmt* raw = nullptr;
  const int code = sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &raw, nullptr);
  handle_.reset(raw);
  CheckSqlite(code, database);
}

bool SqliteStatement::Step() {
  const int code = sqlite3_step(handle_.get());
  Check(code);
  return code == SQLITE_ROW;
}

void SqliteStatement::Check(int code) const { CheckSqlite(code, sqlite3_db_handle(handle_.get())); }

void SqliteStatement::Reset() noexcept {
  sqlite3_reset(handle_.get());
  sqlite3_clear_bindings(handle_.get());
}

void SqliteStatement::Bind(std::size_t parameter, const Value& value) {
  if (value.IsNull() || value.IsEmpty())
    BindNull(parameter);
  else if (value.IsBoolean())
    BindInteger(parameter, value.boolean() ? 1 : 0);
  else if (value.IsInteger())
    BindInteger(parameter, value.integer());
  else if (value.IsDouble())
    BindReal(parameter, value.real());
  else if (value.IsDate())
    BindText(parameter, StoredDate(value.date()));
  else
    BindText(parameter, value.text());
}

void SqliteStatement::BindInteger(std::size_t parameter, std::int64_t number) {
  Check(sqlite3_bind_int64(handle_.get(), static_cast<int>(parameter) + 1, number));
}

void SqliteStatement::BindReal(std::size_t parameter, double number) {
  Check(sqlite3_bind_double(handle_.get(), static_cast<int>(parameter) + 1, Finite(number)));
}

void SqliteStatement::BindText(std::size_t parameter, std::string_view text) {
  Check(sqlite3_bind_text64(handle_.get(), static_cast<int>(parameter) + 1, text.data(), text.size(),
                            SQLITE_TRANSIENT, SQLITE_UTF8));
}

void SqliteStatement::BindNull(std::size_t parameter) {
  Check(sqlite3_bind_null(handle_.get(), static_cast<int>(parameter) + 1));
}

std::size_t SqliteStatement::ColumnCount() const {
  return static_cast<std::size_t>(sqlite3_column_count(handle_.get()));
}

std::string SqliteStatement::ColumnName(std::size_t column) const {
  const char* name = sqlite3_column_name(handle_.get(), static_cast<int>(column));
  return name == nullptr ? "" : name;
}

bool SqliteStatement::IsDeclaredDate(std::size_t column) const {
  const char* declared = sqlite3_column_decltype(handle_.get(), static_cast<int>(column));
  return declared != nullptr && std::strcmp(declared, "DATETIME") == 0;
}

Value SqliteStatement::Column(std::size_t index, bool date) const {
  sqlite3_stmt* statement = handle_.get();
  const int column = static_cast<int>(index);
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
      return Value(static_cast<long long>(sqlite3_column_int64(statement, column)));
    case SQLITE_FLOAT:
      return Value(Finite(sqlite3_column_double(statement, column)));
    case SQLITE_NULL:
      return Value(Null{});
    default:
      break;
  }
  const std::string_view text = ColumnText(statement, column);
  if (date)
    if (const auto stored = FromStoredDate(text)) return Value(*stored);
  return Value(text);
}

std::int64_t SqliteStatement::Integer(std::size_t column) const {
  return sqlite3_column_int64(handle_.get(), static_cast<int>(column));
}

SqliteDatabase::Lease::Lease(SqliteDatabase& database, std::string_view sql) {
  const auto* kept = database.statements_.Find(sql);
  const bool free = kept != nullptr && kept->use_count() == 1;
  statement_ = free ? *kept : std::make_shared<SqliteStatement>(database.handle(), sql);
  if (kept == nullptr && sql.size() <= kLongestKeptText) database.statements_.Keep(sql, statement_);
}

void SqliteDatabase::Closer::operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }

SqliteDatabase::SqliteDatabase(const std::string& file, Mode mode) : statements_(kMostStatements) {
  const int flags =
      SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | (mode == Mode::New ? SQLITE_OPEN_CREATE : 0);
  sqlite3* raw = nullptr;
  const int code = sqlite3_open_v2(file.c_str(), &raw, flags, nullptr);
  handle_.reset(raw);
  CheckSqlite(code, raw);
  // They tell texts apart by their lengths: names that differ in blanks at the end would not be joined.
  CheckSqlite(sqlite3_test_control(SQLITE_TESTCTRL_OPTIMIZATIONS, raw, kBloomFilters), raw);
  CheckSqlite(sqlite3_busy_handler(raw, &SqliteDatabase::KeepWaiting, patience_.get()), raw);
}

void SqliteDatabase::SetBusyTimeout(int seconds) { patience_->limit = std::chrono::seconds(seconds); }

void SqliteDatabase::SetOnWait(std::function<bool(std::chrono::milliseconds waited)> onWait) {
  patience_->onWait = std::move(onWait);
}

// Called inside a statement, which nothing may be thrown through: who cannot be asked gives up.
int SqliteDatabase::KeepWaiting(void* patience, int calls) noexcept {
  auto& [limit, onWait, since] = *static_cast<Patience*>(patience);
  const auto now = std::chrono::steady_clock::now();
  if (calls == 0) since = now;
  const auto waited = std::chrono::duration_cast<std::chrono::milliseconds>(now - since);
  if (waited >= limit) return 0;
  try {
    if (onWait && !onWait(waited)) return 0;
  } catch (...) {
    return 0;
  }
  std::this_thread::sleep_for(std::min(calls < kShortPauses ? kFirstPause : kPause, limit - waited));
  return 1;
}

void SqliteDatabase::SetOnWork(std::function<void()> onWork) {
  constexpr int kStepsBetweenLooks = 10000;  // of the library: a millisecond or less
  work_->onWork = std::move(onWork);
  sqlite3_progress_handler(handle(), kStepsBetweenLooks, &SqliteDatabase::KeepWorking, work_.get());
}

// As above; of what goes wrong in telling the statement knows nothing. A statement that is done soon is no
// news.
int SqliteDatabase::KeepWorking(void* work) noexcept {
  auto& [onWork, lookedAt, toldAt] = *static_cast<Work*>(work);
  const auto now = std::chrono::steady_clock::now();
  if (now - std::exchange(lookedAt, now) > kBetweenTellings) toldAt = now;
  if (now - toldAt < kBetweenTellings) return 0;
  toldAt = now;
  try {
    onWork();
  } catch (...) {
  }
  return 0;
}

bool SqliteDatabase::IsReadOnly() const { return sqlite3_db_readonly(handle(), "main") == 1; }

bool SqliteDatabase::InTransaction() const { return sqlite3_get_autocommit(handle()) == 0; }

void SqliteDatabase::Run(std::string_view sql, const std::vector<Value>& parameters) {
  Lease statement(*this, sql);
  for (std::size_t i = 0; i < parameters.size(); ++i) statement->Bind(i, parameters[i]);
  while (statement->Step()) {
  }
}

void SqliteDatabase::RunScript(const std::string& script) {
  CheckSqlite(sqlite3_exec(handle(), script.c_str(), nullptr, nullptr, nullptr), handle());
}

std::int64_t SqliteDatabase::Number(std::string_view sql) {
  Lease statement(*this, sql);
  return statement->Step() ? statement->Integer(0) : 0;
}

std::string SqliteDatabase::Text(std::string_view sql) {
  Lease statement(*this, sql);
  return statement->Step() ? statement->Column(0).TextOrEmpty() : "";
}

std::int64_t SqliteDatabase::TotalChanges() const { return sqlite3_total_changes64(handle()); }

std::int64_t SqliteDatabase::ChangesSince(std::int64_t totalChanges) const {
  return TotalChanges() == totalChanges ? 0 : sqlite3_changes64(handle());
}

void SqliteDatabase::FlushLog() {
  sqlite3_file* log = nullptr;
  CheckSqlite(sqlite3_file_control(handle(), "main", SQLITE_FCNTL_JOURNAL_POINTER, &log), handle());
  const bool open = log != nullptr && log->pMethods != nullptr;
  if (open && log->pMethods->xSync(log, SQLITE_SYNC_NORMAL) != SQLITE_OK)
    throw DatabaseError("The disk did not take what was saved.");
}

void SqliteDatabase::LimitLog() { sqlite3_wal_hook(handle(), &SqliteDatabase::TakeCommit, log_.get()); }

// The commit stands, whatever becomes of its log.
int SqliteDatabase::TakeCommit(void* log, sqlite3* database, const char* name, int pages) noexcept {
  int& kept = static_cast<Log*>(log)->pages;
  kept = pages;
  if (pages >= kMostLogPages) CarryLogOver(database, name, kept);
  return SQLITE_OK;
}

void SqliteDatabase::EndEvent() noexcept {
  if (log_->pages >= kLogPages) CarryLogOver(handle(), "main", log_->pages);
}

std::int64_t SqliteDatabase::LastRowId() const { return sqlite3_last_insert_rowid(handle()); }

}  // namespace ktl
