#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "database/database_error.h"
#include "database/driver.h"
#include "database/tsql/program.h"

namespace ktl {

// What an ODBC driver reports of a failure.
struct Diagnostic {
  std::string state;
  long native = 0;
  std::string message;
};

enum class ServerFailure {
  Other,
  Statement,  // a text that the server does not take
  NoSuchTable,
  NoSuchProcedure,
  DuplicateKey,  // or another rule that its table has for a row
  DeadLock,      // the transaction is undone by then
  LockWait,
  TimeOut,
  Denied,
  ConnectionLost,
  LoginRefused,
  NoSuchDatabase,
  Unreachable,
};

struct NumberedFailure {
  long number;
  ServerFailure failure;
};

// What a server means by its number; nothing where the table does not know it.
std::optional<ServerFailure> FailureNumbered(std::span<const NumberedFailure> known, long number);

class ServerError final : public DatabaseError {
 public:
  ServerError(ServerFailure failure, std::string description, std::string state = "");
  ServerFailure failure() const { return failure_; }
  const std::string& state() const { return state_; }  // ODBC's five characters

 private:
  ServerFailure failure_;
  std::string state_;
};

// What servers differ in.
class ServerDialect {
 public:
  virtual ~ServerDialect() = default;

  virtual std::string_view Product() const = 0;
  // Under which names its ODBC drivers are known, the best one first.
  virtual std::span<const std::string_view> DriverNames() const = 0;
  virtual std::string_view DriverPackage() const = 0;  // what installs one, on Debian
  // Where the company is, for messages.
  virtual std::string ServerOf(const ConnectionSettings& settings) const = 0;
  virtual std::string DatabaseOf(const ConnectionSettings& settings) const = 0;
  // Throws DatabaseError for what its driver would take for something else.
  virtual void CheckSettings(const ConnectionSettings&) const {}
  // The ODBC connection string behind its driver's name. It holds the password: it is for the driver alone.
  virtual std::string OdbcString(const ConnectionSettings& settings, std::string_view driver) const = 0;
  // Said once after each connect.
  virtual std::vector<std::string> FirstTexts(const ConnectionSettings& settings) const = 0;

  // A server that speaks it gets texts whole, as they stand; for others they are translated.
  virtual bool SpeaksTheLanguage() const = 0;
  virtual tsql::Program Translate(std::string_view sql, bool updatable, int parameters) const = 0;
  // Behind a query of which one row is wanted; "" where the server has no such word.
  virtual std::string_view FirstRowOnly() const = 0;
  // A database that does not tell its schema's version may be a company all the same.
  virtual bool MayLackVersion() const = 0;
  virtual std::string TableName(std::string_view name) const = 0;  // in the server's own spelling
  virtual std::string Quoted(std::string_view name) const = 0;
  std::string QuotedTable(std::string_view name) const { return Quoted(TableName(name)); }
  virtual std::string InsertOfDefaults(const std::string& quotedTable) const = 0;

  // Answers 1 when from then on nobody else is inside a transaction of a company's writer, 0 when another one
  // still was after so many milliseconds.
  virtual std::string BeginText(int milliseconds) const = 0;
  virtual std::string CommitText() const = 0;
  virtual std::string RollbackText() const = 0;  // fails neither without a transaction nor without the turn
  virtual std::string InTransactionText() const = 0;  // answers 0 outside one

  virtual ServerFailure FailureOf(const Diagnostic& diagnostic) const = 0;
  // Whether its driver takes and gives texts of bytes as UTF-8 whatever the machine's language is.
  virtual bool TakesUtf8() const = 0;
};

// A value for an ODBC connection string: whatever characters it has.
std::string OdbcValue(std::string_view value);
// KEY=VALUE; when there is a value.
std::string OdbcPart(std::string_view key, std::string_view value);

}  // namespace ktl
