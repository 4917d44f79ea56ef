#include "support/server_company.h"

#include <fmt/format.h>

#include "company/server_schema.h"
#include "database/drivers/mariadb_dialect.h"
#include "database/drivers/odbc_database.h"
#include "runtime/text.h"

namespace ktl::test {

namespace {

constexpr std::size_t kRowsAtOnce = 500;

std::string Literal(const Value& value) {
  if (value.IsNull()) return "NULL";
  if (value.IsInteger()) return std::to_string(value.integer());
  if (value.IsDouble()) return fmt::format("{:.16e}", value.real());
  if (!value.IsDate()) return "'" + ReplaceAll(value.text(), "'", "''") + "'";
  const Date& date = value.date();
  return fmt::format("'{}-{}-{} {}:{}:{}'", date.year(), date.month(), date.day(), date.hour(), date.minute(),
                     date.second());
}

void CopyRows(Connection& from, OdbcDatabase& to, const std::string& table) {
  const ResultSet read = from.Query("SELECT * FROM [" + table + "]");
  std::string columns;
  for (const auto& column : read.columns) columns += (columns.empty() ? "`" : ", `") + column + "`";
  std::string rows;
  for (std::size_t i = 0; i < read.rows.size(); ++i) {
    std::string row;
    for (const auto& value : read.rows[i]) row += (row.empty() ? "(" : ", ") + Literal(value);
    rows += (rows.empty() ? "" : ", ") + row + ")";
    if ((i + 1) % kRowsAtOnce != 0 && i + 1 != read.rows.size()) continue;
    to.Run(fmt::format("INSERT INTO `{}` ({}) VALUES {}", UpperCase(table), columns, rows));
    rows.clear();
  }
}

}  // namespace

ServerCompany::ServerCompany(Connection& from) {
  static const MariaDbDialect dialect;
  OdbcDatabase database(dialect);
  ConnectionSettings settings;
  settings.connectionString = database_.ConnectionString();
  database.Open(settings);
  for (const auto& table : TableCatalogue()) {
    for (const auto& statement : TableStatements(ServerKind::MariaDb, table)) database.Run(statement);
    CopyRows(from, database, table.name);
  }
  for (const auto& statement : ObjectStatements(ServerKind::MariaDb)) database.Run(statement);
  cn_.SetClient({"PC1", "ADMIN", [] { return *Date::FromYmd(2025, 1, 15, 10, 30, 0); }});
  cn_.Open(database_.ConnectionString());
}

}  // namespace ktl::test
