#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "database/drivers/recently_used.h"
#include "database/drivers/server_dialect.h"
#include "runtime/value.h"

namespace ktl {

enum class OdbcHandle : short { Environment = 1, Connection = 2, Statement = 3 };

struct OdbcFreer {
  OdbcHandle kind = OdbcHandle::Statement;
  void operator()(void* handle) const noexcept;
};
using OdbcPointer = std::unique_ptr<void, OdbcFreer>;

class OdbcDatabase;

// One statement on a connection. Columns and parameters count from 0.
class OdbcStatement {
 public:
  explicit OdbcStatement(OdbcDatabase& database);
  ~OdbcStatement();

  enum class Way {
    Direct,    // text and values in one message
    Prepared,  // the text once, then its values alone; always the same text
  };
  void Run(const std::string& sql, std::span<const Value> values, Way way);
  // The primary key of a table, as ODBC tells it: a row a column.
  void AskForKey(const std::string& table);
  // True while there is a row.
  bool Fetch();
  // To be called once for a column of a row.
  Value Column(std::size_t column);
  bool HasRows() const { return ColumnCount() > 0; }
  std::int64_t RowsChanged() const;
  // What a batch of the server's own answers next; false when there is nothing more.
  bool NextResult();
  // Behind the last row that is wanted: to break off costs a round trip, so that what has ended is read out.
  void ReadOut();
  // Rows that nobody has read are thrown away.
  void Close() noexcept;

  enum class Kind { Integer, Real, Date, Text, LongText };
  std::size_t ColumnCount() const;
  const std::string& ColumnName(std::size_t column) const;
  Kind ColumnKind(std::size_t column) const;

 private:
  struct Slot;       // what a column is read into
  struct Parameter;  // what a value is sent from

  void BindValues(std::span<const Value> values);
  void Describe();
  Slot Described(std::size_t column) const;
  void Bind(std::size_t column);
  void ReadUnbound(std::size_t column);
  void Check(short code) const;

  OdbcDatabase& database_;
  OdbcPointer handle_;
  std::vector<Slot> columns_;
  std::vector<Parameter> parameters_;
  bool prepared_ = false;
};

// A connection to a server through its ODBC driver.
class OdbcDatabase {
 public:
  // A statement in use; closed when the lease ends. A text said for the first time is said by a statement
  // that all such texts share; one said again gets a statement of its own, prepared, but where texts go out
  // whole or are to be planned anew each time.
  class Lease {
   public:
    Lease(OdbcDatabase& database, const std::string& sql, std::span<const Value> values = {},
          bool planAnew = false);
    ~Lease() { statement_->Close(); }
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;
    OdbcStatement* operator->() { return statement_.get(); }
    OdbcStatement& operator*() { return *statement_; }

   private:
    std::shared_ptr<OdbcStatement> statement_;
  };

  // The dialect must outlive the database.
  explicit OdbcDatabase(const ServerDialect& dialect);
  ~OdbcDatabase();

  // Throws ServerError. Seconds; 0 for as long as it takes.
  void Open(const ConnectionSettings& settings);
  void Close() noexcept;
  bool IsOpen() const { return open_; }
  bool IsDead() const;  // as far as its driver knows

  // Runs a text of the server's own language to its end.
  void Run(const std::string& sql);
  std::int64_t Number(const std::string& sql);  // the first field of the first row; 0 without one

  const ServerDialect& dialect() const { return dialect_; }
  void* handle() const { return connection_.get(); }
  int commandTimeout() const { return commandTimeout_; }
  // The primary key of a table, in its order.
  std::vector<std::string> KeyOf(const std::string& table);

 private:
  friend class OdbcStatement;
  std::string InstalledDriver(const ConnectionSettings& settings) const;

  const ServerDialect& dialect_;
  OdbcPointer environment_;
  OdbcPointer connection_;
  bool open_ = false;
  int commandTimeout_ = 0;
  std::shared_ptr<OdbcStatement> direct_;
  // Null for a text that was said once.
  RecentlyUsed<std::shared_ptr<OdbcStatement>> statements_;
};

// The one place where return codes become errors.
void CheckOdbc(short code, OdbcHandle kind, void* handle, const ServerDialect& dialect);

}  // namespace ktl
