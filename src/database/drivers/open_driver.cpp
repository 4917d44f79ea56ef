#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "database/connection_string.h"
#include "database/drivers/odbc_driver.h"
#include "database/drivers/sqlite_driver.h"
#include "runtime/text.h"

namespace ktl {

namespace {

template <FileKind kKind>
std::unique_ptr<Driver> OpenSqlite(const ConnectionSettings& settings) {
  SqliteDatabase file = OpenSqliteFile(ConnectionSetting(settings.connectionString, "Data Source"), kKind,
                                       settings.connectionTimeout, settings.onWait);
  return std::make_unique<SqliteDriver>(std::move(file), kKind, settings);
}

struct Provider {
  std::string_view name;
  std::unique_ptr<Driver> (*open)(const ConnectionSettings&);
};

constexpr std::array kProviders{
    Provider{"SQLite", OpenSqlite<FileKind::Company>},
    Provider{"Microsoft.Jet.OLEDB.4.0", OpenSqlite<FileKind::LocalStore>},
    Provider{"SQLOLEDB.1", OpenSqlServer},
    Provider{"SQLOLEDB", OpenSqlServer},
    Provider{"SQLNCLI", OpenSqlServer},
    Provider{"MariaDB", OpenMariaDb},
};

}  // namespace

std::unique_ptr<Driver> OpenDriver(const ConnectionSettings& settings) {
  const std::string wanted = ConnectionSetting(settings.connectionString, "Provider");
  if (wanted.empty()) throw DatabaseError("The connection string names no provider.");
  const auto found = std::ranges::find_if(
      kProviders, [&](const Provider& provider) { return EqualsNoCase(provider.name, wanted); });
  if (found == kProviders.end()) throw DatabaseError(fmt::format("The provider {} is unknown.", wanted));
  return found->open(settings);
}

}  // namespace ktl
