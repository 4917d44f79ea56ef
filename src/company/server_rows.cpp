#include "company/server_rows.h"

#include <fmt/format.h>

#include <algorithm>

#include "company/company_error.h"
#include "company/embedded_rows.h"
#include "database/drivers/server_company.h"

namespace ktl {

namespace {

constexpr int kConnectPatience = 60;  // seconds; statements may take as long as they need
constexpr int kTurnPatience = 60000;  // milliseconds
// What one statement takes: SQL Server has no more than 2,100 values and 1,000 rows.
constexpr std::size_t kMostValues = 2000, kMostRows = 500;

std::string ColumnList(const Server& server, const std::vector<ColumnDescription>& columns) {
  std::string list;
  for (const auto& column : columns)
    list += (list.empty() ? "" : ", ") + ServerName(server.kind(), column.name);
  return list;
}

std::string KeyOrder(const Server& server, const TableDescription& table) {
  std::string order;
  for (const auto& column : table.key)
    order += (order.empty() ? " ORDER BY " : ", ") + ServerName(server.kind(), column);
  return order;
}

std::unique_ptr<const ServerDialect> DialectFor(const CompanyAddress& address) {
  if (auto dialect = ServerDialectOf(address.connectionString)) return dialect;
  throw CompanyError("The connection string names no server.");
}

class ServerSource final : public RowSource {
 public:
  explicit ServerSource(const CompanyAddress& address) : server_(address, Server::Holds::Company) {
    OdbcDatabase& database = server_.database();
    if (server_.kind() == ServerKind::MariaDb) {
      database.Run("SET SESSION TRANSACTION ISOLATION LEVEL REPEATABLE READ");
      database.Run("START TRANSACTION WITH CONSISTENT SNAPSHOT");
    } else if (database.Number(server_.dialect().BeginText(kTurnPatience)) == 0) {
      throw CompanyError(server_.shown() + ": another workstation is writing, please try again.");
    }
  }
  std::vector<std::string> Tables() override { return server_.Tables(); }
  std::vector<std::string> ColumnsOf(const std::string& table) override {
    const bool mariaDb = server_.kind() == ServerKind::MariaDb;
    return server_.Texts(fmt::format(
        "SELECT COLUMN_NAME FROM INFORMATION_SCHEMA.COLUMNS WHERE TABLE_SCHEMA = {} AND TABLE_NAME = '{}' "
        "ORDER BY ORDINAL_POSITION",
        mariaDb ? "DATABASE()" : "SCHEMA_NAME()", server_.dialect().TableName(table)));
  }
  void Read(const TableDescription& table, const RowHandler& handler) override {
    server_.Read(table, handler);
  }

 private:
  Server server_;
};

class ServerTarget final : public RowTarget {
 public:
  ServerTarget(const CompanyAddress& address, bool replace)
      : server_(address, Server::Holds::Anything),
        stage_(server_.kind() == ServerKind::MariaDb ? StageOnMariaDb(server_, replace)
                                                     : StageOnSqlServer(server_, replace)) {}

  void Make(const TableDescription& table) override {
    made_.push_back(table);
    for (const auto& statement : TableStatements(server_.kind(), table, stage_->NameOf(table)))
      server_.database().Run(statement);
    rowsAtOnce_ = std::clamp<std::size_t>(kMostValues / table.columns.size(), 1, kMostRows);
    stage_->BeforeRows(table);
  }

  void Add(const Row& row) override {
    pending_.insert(pending_.end(), row.begin(), row.end());
    if (pending_.size() >= rowsAtOnce_ * made_.back().columns.size()) Send();
  }

  void Flush() override {
    if (!pending_.empty()) Send();
    stage_->AfterRows(made_.back());
  }

  RowSum SumOf(const TableDescription& table) override {
    RowSum sum;
    server_.Read(
        table, [&](const Row& row) { sum.Add(row); }, stage_->NameOf(table));
    return sum;
  }

  void Keep() override { stage_->Put(made_); }
  std::string Cleaned() const override { return stage_->Cleaned(); }

 private:
  void Send() {
    const TableDescription& table = made_.back();
    std::string row = "(?";
    for (std::size_t i = 1; i < table.columns.size(); ++i) row += ",?";
    row += ")";
    std::string text =
        fmt::format("INSERT INTO {} ({}) VALUES {}", ServerName(server_.kind(), stage_->NameOf(table)),
                    ColumnList(server_, table.columns), row);
    for (std::size_t i = 1; i < pending_.size() / table.columns.size(); ++i) text += "," + row;
    { OdbcDatabase::Lease sent(server_.database(), text, pending_); }
    pending_.clear();
  }

  Server server_;
  std::unique_ptr<ServerStage> stage_;
  std::vector<TableDescription> made_;
  std::vector<Value> pending_;
  std::size_t rowsAtOnce_ = 1;
};

}  // namespace

Server::Server(const CompanyAddress& address, Holds wanted)
    : dialect_(DialectFor(address)),
      kind_(dialect_->SpeaksTheLanguage() ? ServerKind::SqlServer : ServerKind::MariaDb),
      database_(std::make_unique<OdbcDatabase>(*dialect_)),
      shown_(address.shown) {
  ConnectionSettings settings;
  settings.connectionString = address.connectionString;
  settings.connectionTimeout = kConnectPatience;
  settings.commandTimeout = 0;
  (wanted == Holds::Company ? OpenServerCompany : OpenServer)(*database_, settings);
}

std::vector<std::string> Server::Texts(const std::string& sql) {
  OdbcDatabase::Lease rows(*database_, sql);
  std::vector<std::string> texts;
  while (rows->Fetch()) texts.push_back(rows->Column(0).TextOrEmpty());
  return texts;
}

std::vector<std::string> Server::Tables() {
  // Some MariaDB servers keep all names in lower case, whatever they are called.
  const bool mariaDb = kind_ == ServerKind::MariaDb;
  return Texts(fmt::format(
      "SELECT {} FROM INFORMATION_SCHEMA.TABLES WHERE TABLE_TYPE = 'BASE TABLE' AND TABLE_SCHEMA = {}",
      mariaDb ? "IF(@@lower_case_table_names = 0, TABLE_NAME, UPPER(TABLE_NAME))" : "TABLE_NAME",
      mariaDb ? "DATABASE()" : "SCHEMA_NAME()"));
}

void Server::Read(const TableDescription& table, const RowHandler& handler, const std::string& name) {
  const std::string called = dialect_->TableName(name.empty() ? table.name : name);
  OdbcDatabase::Lease rows(*database_, fmt::format("SELECT {} FROM {}{}", ColumnList(*this, table.columns),
                                                   ServerName(kind_, called), KeyOrder(*this, table)));
  Row row(table.columns.size());
  while (rows->Fetch()) {
    for (std::size_t i = 0; i < row.size(); ++i) row[i] = AsHeld(table.columns[i].kind, rows->Column(i));
    handler(row);
  }
}

std::unique_ptr<RowSource> OpenServerSource(const CompanyAddress& address) {
  return std::make_unique<ServerSource>(address);
}

std::unique_ptr<RowTarget> OpenServerTarget(const CompanyAddress& address, bool replace) {
  return std::make_unique<ServerTarget>(address, replace);
}

std::unique_ptr<RowSource> OpenSource(const CompanyAddress& address) {
  return address.OnServer() ? OpenServerSource(address) : OpenEmbeddedSource(address);
}

std::unique_ptr<RowTarget> OpenTarget(const CompanyAddress& address, bool replace) {
  return address.OnServer() ? OpenServerTarget(address, replace) : OpenEmbeddedTarget(address, replace);
}

}  // namespace ktl
