#include "database/connection.h"

#include <chrono>

#include "database/statement_log.h"
#include "database/statement_twin.h"
#include "runtime/text.h"

namespace ktl {

namespace {

using Clock = std::chrono::steady_clock;

std::chrono::microseconds Since(Clock::time_point start) {
  return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
}

}  // namespace

Connection::Connection() = default;
Connection::~Connection() = default;

void Connection::SetStatementLog(const std::string& file) {
  log_ = file.empty() ? nullptr : std::make_unique<StatementLog>(file);
}

void Connection::Open(const std::string& connectionString) {
  Close();
  settings_.connectionString = connectionString;
  driver_ = OpenDriver(settings_);
}

void Connection::Close() { driver_.reset(); }

Driver& Connection::driver() {
  if (!driver_) throw DatabaseError("Operation is not allowed when the object is closed.", 3704);
  return *driver_;
}

template <typename Work, typename Rows>
auto Connection::Timed(std::string_view sql, Work work, Rows rows) {
  if (!log_) return work();
  const auto start = Clock::now();
  try {
    auto result = work();
    log_->Write(Since(start), rows(result), sql);
    return result;
  } catch (const DatabaseError&) {
    log_->Write(Since(start), -1, sql);
    throw;
  }
}

std::int64_t Connection::Execute(std::string_view sql) {
  return Timed(
      sql, [&] { return driver().Execute(sql); }, [](std::int64_t rows) { return rows; });
}

ResultSet Connection::Query(std::string_view sql, Fetch fetch, bool updatable) {
  return Timed(
      sql, [&] { return driver().Query(sql, fetch, updatable); },
      [](const ResultSet& result) { return std::ssize(result.rows); });
}

std::int64_t Connection::Execute(const StatementTwin& twin) {
  return Timed(
      twin.said, [&] { return driver().Execute(driver().Choose(twin)); },
      [](std::int64_t rows) { return rows; });
}

ResultSet Connection::Query(const StatementTwin& twin, Fetch fetch) {
  return Timed(
      twin.said, [&] { return driver().Query(driver().Choose(twin), fetch, false); },
      [](const ResultSet& result) { return std::ssize(result.rows); });
}

std::optional<Value> Connection::FirstValue(std::string_view sql) {
  auto result = Query(sql, Fetch::FirstRow);
  if (result.rows.empty()) return std::nullopt;
  return std::move(result.rows.front().front());
}

bool Connection::HasRows(std::string_view sql) { return !Query(sql, Fetch::FirstRow).rows.empty(); }

void Connection::BeginTrans() { driver().Begin(); }
void Connection::CommitTrans() { driver().Commit(); }
void Connection::RollbackTrans() { driver().Rollback(); }
bool Connection::InTransaction() const { return driver_ && driver_->InTransaction(); }

std::string Connection::Explain(std::string_view sql) { return driver().Explain(sql); }

Transaction::Transaction(Connection& cn) : cn_(cn) { cn_.BeginTrans(); }

Transaction::~Transaction() {
  if (state_ != State::Active || !cn_.InTransaction()) return;
  try {
    cn_.RollbackTrans();
  } catch (const DatabaseError&) {
    // Nothing is left to be undone by hand: closing the connection undoes it.
  }
}

void Transaction::Commit() {
  cn_.CommitTrans();
  state_ = State::Committed;
}

void Transaction::Rollback() {
  state_ = State::RolledBack;
  cn_.RollbackTrans();
}

}  // namespace ktl
