#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "database/drivers/field_values.h"
#include "database/drivers/odbc_database.h"
#include "database/drivers/program_driver.h"
#include "database/drivers/server_dialect.h"

namespace ktl {

// A company on a server. A connection that was lost is made anew by the next statement outside a transaction;
// nothing is said twice by itself.
class OdbcDriver final : public ProgramDriver {
 public:
  // Throws DatabaseError when the company cannot be had, one clear line each.
  OdbcDriver(std::unique_ptr<const ServerDialect> dialect, const ConnectionSettings& settings);
  ~OdbcDriver() override;

  ResultSet Query(std::string_view sql, Fetch fetch, bool updatable) override;
  std::int64_t Execute(std::string_view sql) override;
  std::string Explain(std::string_view sql) override;
  std::string_view Choose(const StatementTwin& twin) override;
  RowKey InsertRow(const std::string& table, const std::vector<Assignment>& values) override;
  void UpdateRow(const std::string& table, const RowKey& key, const std::vector<Assignment>& values) override;
  void Begin() override;
  void Commit() override;
  void Rollback() override;
  bool InTransaction() const override { return state_ != State::Free; }
  void MakeDurable() override;

 protected:
  tsql::Program Translate(std::string_view sql, bool updatable, int parameters) const override;
  ResultSet ReadRows(const tsql::Step& step, const Run& run) override;
  std::int64_t CountRows(const tsql::Step& step, Numbers numbers) override;
  std::int64_t CountChanges(const tsql::Step& step, Numbers numbers) override;
  bool Decide(const tsql::Step& branch) override;
  void Call(const tsql::Step& step) override;

 private:
  using Clock = std::chrono::steady_clock;

  enum class State {
    Free,
    InTransaction,
    Undone,  // the server gave the transaction up: until it is rolled back here, no statement may run
  };

  struct Table {
    std::vector<std::string> columns;
    FieldKinds kinds;
    std::vector<std::string> key;  // every column where the table has none
  };
  // What a row is known by: the values that its key had when it was read.
  using Key = std::shared_ptr<std::vector<Value>>;

  void Connect();
  // Runs what says something to the server; what its failure means for the connection is seen to here.
  template <typename Work>
  auto Say(Work work);
  bool TransactionLives();
  [[noreturn]] void Learn(const ServerError& error, Clock::time_point since);
  std::string NoAnswer() const;
  std::string HowLost(Clock::time_point since) const;

  // For a server that speaks the language of the texts.
  ResultSet QueryWhole(std::string_view sql, Fetch fetch, bool updatable);
  std::int64_t ExecuteWhole(std::string_view sql);

  ResultSet ReadResult(OdbcStatement& statement, const tsql::Step& step, Fetch fetch);
  ResultSet EmptyResult(const std::string& table);
  const Table& TableOf(const std::string& name);

  std::unique_ptr<const ServerDialect> dialect_;
  ConnectionSettings settings_;
  OdbcDatabase database_;
  State state_ = State::Free;
  bool changed_ = false;  // since the person was last told that something is done
  // What fills tables of the connection's own, by the procedure: said again to a new connection.
  std::map<std::string, std::string> fillings_;
  std::unordered_map<std::string, Table, tsql::WordHash, tsql::WordEqual> tables_;
};

}  // namespace ktl
