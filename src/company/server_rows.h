#pragma once

#include <functional>

#include "company/company_rows.h"
#include "company/server_schema.h"
#include "database/drivers/odbc_database.h"

namespace ktl {

// A server as companies are made and read on it: in the server's own language.
class Server final {
 public:
  enum class Holds { Company, Anything };
  // Throws DatabaseError when the server cannot be had, or holds no company where one is wanted.
  Server(const CompanyAddress& address, Holds wanted);

  ServerKind kind() const { return kind_; }
  OdbcDatabase& database() { return *database_; }
  const ServerDialect& dialect() const { return *dialect_; }
  const std::string& shown() const { return shown_; }

  std::vector<std::string> Texts(const std::string& sql);  // the first column
  std::vector<std::string> Tables();                       // of the database
  // name: of the table, where it is not that of the description.
  void Read(const TableDescription& table, const RowHandler& handler, const std::string& name = "");

 private:
  std::unique_ptr<const ServerDialect> dialect_;
  ServerKind kind_;
  std::unique_ptr<OdbcDatabase> database_;
  std::string shown_;
};

// How a company in the making is kept apart from what the database holds until it is whole.
class ServerStage {
 public:
  virtual ~ServerStage() = default;
  // The name that a table goes by while it is being filled.
  virtual std::string NameOf(const TableDescription& table) const = 0;
  virtual void BeforeRows(const TableDescription& table) = 0;
  virtual void AfterRows(const TableDescription& table) = 0;
  virtual void Put(const std::vector<TableDescription>& made) = 0;
  virtual std::string Cleaned() const = 0;
};

// Throw CompanyError: a company is there and not to be replaced, or another program is making one.
std::unique_ptr<ServerStage> StageOnMariaDb(Server& server, bool replace);
std::unique_ptr<ServerStage> StageOnSqlServer(Server& server, bool replace);

std::unique_ptr<RowSource> OpenServerSource(const CompanyAddress& address);
std::unique_ptr<RowTarget> OpenServerTarget(const CompanyAddress& address, bool replace);

}  // namespace ktl
