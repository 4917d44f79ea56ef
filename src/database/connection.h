#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "database/database_error.h"
#include "database/driver.h"
#include "runtime/value.h"

namespace ktl {

class StatementLog;

// The shared database connection. Texts are Transact-SQL; the driver makes of them what its database
// understands.
class Connection {
 public:
  Connection();
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // To be set before Open. Seconds; the defaults are 600.
  void SetConnectionTimeout(int seconds) { settings_.connectionTimeout = seconds; }
  void SetCommandTimeout(int seconds) { settings_.commandTimeout = seconds; }
  void SetClient(ClientIdentity client) { settings_.client = std::move(client); }
  void SetOnWait(WaitHandler onWait) { settings_.onWait = std::move(onWait); }
  // A file to which every statement goes as it was said, one a line: microseconds, rows, text. "" for none.
  void SetStatementLog(const std::string& file);

  // "Provider=SQLite;Data Source=FILE;" is an embedded company; "Provider=Microsoft.Jet.OLEDB.4.0" is the
  // local store, a file of the same kind without a schema version. "Provider=MariaDB;", "Provider=SQLNCLI;"
  // and "Provider=SQLOLEDB.1;" are companies on servers. Throws DatabaseError: no such file, a directory, no
  // company, another schema version, not writable, locked; no ODBC driver, no server, no such database, a
  // user whom the server refuses.
  void Open(const std::string& connectionString);
  void Close();
  bool IsOpen() const { return driver_ != nullptr; }

  // Runs a text to its end (a batch, a procedure call, a query whose rows nobody wants): rows changed, or
  // rows read.
  std::int64_t Execute(std::string_view sql);
  // The rows of a query; of a batch, those of its first query.
  ResultSet Query(std::string_view sql, Fetch fetch = Fetch::AllRows, bool updatable = false);
  // The same with an equivalent for the embedded store.
  std::int64_t Execute(const StatementTwin& twin);
  ResultSet Query(const StatementTwin& twin, Fetch fetch = Fetch::AllRows);
  // Field 0 of the first row; nothing when there is no row. Steps once.
  std::optional<Value> FirstValue(std::string_view sql);
  bool HasRows(std::string_view sql);

  void BeginTrans();
  void CommitTrans();
  void RollbackTrans();
  bool InTransaction() const;
  // Before a person is told that something is done: what was committed so far is on the disk when this
  // returns, whatever happens to the machine then. Once an event, since it waits for the disk. Throws
  // DatabaseError when the disk fails.
  void MakeDurable() { driver().MakeDurable(); }

  // The text as the database gets it (for looking at, nothing is run).
  std::string Explain(std::string_view sql);

  // Throws DatabaseError when the connection is closed.
  Driver& driver();

 private:
  template <typename Work, typename Rows>
  auto Timed(std::string_view sql, Work work, Rows rows);

  ConnectionSettings settings_;
  std::unique_ptr<Driver> driver_;
  std::unique_ptr<StatementLog> log_;
};

// Begun by the constructor, committed only by Commit(), rolled back by the destructor otherwise.
class Transaction {
 public:
  explicit Transaction(Connection& cn);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void Commit();
  void Rollback();

 private:
  enum class State { Active, Committed, RolledBack };
  Connection& cn_;
  State state_ = State::Active;
};

}  // namespace ktl
