#pragma once

#include <any>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/date.h"
#include "runtime/value.h"

namespace ktl {

// A row of an updatable result, as its driver knows it again; what is in it is the driver's own affair.
using RowKey = std::any;

using ResultRow = std::vector<Value>;

struct ResultSet {
  std::vector<std::string> columns;  // in the spelling of the query
  std::vector<ResultRow> rows;
  // Of an updatable result, else empty: its table, and a key for each row.
  std::string baseTable;
  std::vector<RowKey> keys;
};

struct Assignment {
  std::string column;
  Value value;
};

enum class Fetch { AllRows, FirstRow, NoRows };

struct StatementTwin;

// One database behind a connection. Texts are Transact-SQL. Every failure is a DatabaseError.
class Driver {
 public:
  virtual ~Driver() = default;

  // updatable: a SELECT * over one table, whose rows carry keys for UpdateRow.
  virtual ResultSet Query(std::string_view sql, Fetch fetch, bool updatable) = 0;
  virtual std::int64_t Execute(std::string_view sql) = 0;
  virtual std::string Explain(std::string_view sql) = 0;
  // The text of the twin that this database is to get.
  virtual std::string_view Choose(const StatementTwin& twin) = 0;

  // Texts assigned to date columns are read day first and stored as dates. Columns not named stay null.
  virtual RowKey InsertRow(const std::string& table, const std::vector<Assignment>& values) = 0;
  virtual void UpdateRow(const std::string& table, const RowKey& key,
                         const std::vector<Assignment>& values) = 0;

  virtual void Begin() = 0;
  virtual void Commit() = 0;
  virtual void Rollback() = 0;
  virtual bool InTransaction() const = 0;

  // What was committed is on the disk when this returns. A server sees to that at each commit.
  virtual void MakeDurable() {}
};

// Who speaks through a connection: what HOST_NAME() answers and whom the host's procedures take for signed
// on.
struct ClientIdentity {
  std::string hostName;
  std::string userName;
  std::function<Date()> now;  // the clock that the audit table's time comes from
};

// A statement that waits because another workstation is writing.
struct WriteWait {
  std::chrono::milliseconds waited{0};
  // Nothing was written since the last time that a person was told that something is done: if the statement
  // fails now, nothing is half written.
  bool mayGiveUp = true;
};
// Asked again and again while a statement waits; false ends the wait, and the statement fails as if its time
// were over. It must leave the connection alone.
using WaitHandler = std::function<bool(const WriteWait&)>;

struct ConnectionSettings {
  std::string connectionString;
  int connectionTimeout = 600;  // seconds
  int commandTimeout = 600;
  ClientIdentity client;
  WaitHandler onWait;  // none: waits as long as the time-outs say
};

// The driver of the provider that the connection string names, with its database open.
std::unique_ptr<Driver> OpenDriver(const ConnectionSettings& settings);

}  // namespace ktl
