#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "database/connection_string.h"
#include "database/drivers/mariadb_dialect.h"
#include "database/drivers/odbc_driver.h"
#include "database/drivers/server_company.h"
#include "database/drivers/sqlite_driver.h"
#include "database/drivers/sqlserver_dialect.h"
#include "runtime/text.h"

namespace ktl {

namespace {

template <FileKind kKind>
std::unique_ptr<Driver> OpenSqlite(const ConnectionSettings& settings) {
  SqliteDatabase file = OpenSqliteFile(ConnectionSetting(settings.connectionString, "Data Source"), kKind,
                                       settings.connectionTimeout, settings.onWait);
  return std::make_unique<SqliteDriver>(std::move(file), kKind, settings);
}

template <typename Dialect>
std::unique_ptr<const ServerDialect> MakeDialect() {
  return std::make_unique<Dialect>();
}

// A file or a server.
struct Provider {
  std::string_view name;
  std::unique_ptr<Driver> (*openFile)(const ConnectionSettings&);
  std::unique_ptr<const ServerDialect> (*dialect)();
};

constexpr std::array kProviders{
    Provider{"SQLite", OpenSqlite<FileKind::Company>, nullptr},
    Provider{"Microsoft.Jet.OLEDB.4.0", OpenSqlite<FileKind::LocalStore>, nullptr},
    Provider{"SQLOLEDB.1", nullptr, MakeDialect<SqlServerDialect>},
    Provider{"SQLOLEDB", nullptr, MakeDialect<SqlServerDialect>},
    Provider{"SQLNCLI", nullptr, MakeDialect<SqlServerDialect>},
    Provider{"MariaDB", nullptr, MakeDialect<MariaDbDialect>},
};

const Provider& ProviderOf(std::string_view connectionString) {
  const std::string wanted = ConnectionSetting(connectionString, "Provider");
  if (wanted.empty()) throw DatabaseError("The connection string names no provider.");
  const auto found = std::ranges::find_if(
      kProviders, [&](const Provider& provider) { return EqualsNoCase(provider.name, wanted); });
  if (found == kProviders.end()) throw DatabaseError(fmt::format("The provider {} is unknown.", wanted));
  return *found;
}

}  // namespace

std::unique_ptr<const ServerDialect> ServerDialectOf(std::string_view connectionString) {
  const Provider& provider = ProviderOf(connectionString);
  return provider.dialect == nullptr ? nullptr : provider.dialect();
}

std::unique_ptr<Driver> OpenDriver(const ConnectionSettings& settings) {
  if (auto dialect = ServerDialectOf(settings.connectionString))
    return std::make_unique<OdbcDriver>(std::move(dialect), settings);
  return ProviderOf(settings.connectionString).openFile(settings);
}

}  // namespace ktl
