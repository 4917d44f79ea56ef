#include "database/drivers/server_company.h"

#include <fmt/format.h>

#include <optional>

#include "database/schema_version.h"

namespace ktl {

namespace {

std::string ServerName(const ServerDialect& dialect, const ConnectionSettings& settings) {
  return fmt::format("server {} ({})", dialect.ServerOf(settings), dialect.Product());
}

std::optional<std::int64_t> VersionOf(OdbcDatabase& database) {
  try {
    return database.Number("SELECT VERSION FROM KTL_SCHEMA");
  } catch (const ServerError& error) {
    if (error.failure() != ServerFailure::NoSuchTable) throw;
    return std::nullopt;
  }
}

}  // namespace

std::string WithoutStop(std::string sentence) {
  while (sentence.ends_with('.')) sentence.pop_back();
  return sentence;
}

DatabaseError NotReached(const ServerDialect& dialect, const ConnectionSettings& settings,
                         const ServerError& error) {
  const std::string server = ServerName(dialect, settings), database = dialect.DatabaseOf(settings);
  switch (error.failure()) {
    case ServerFailure::LoginRefused:
      return DatabaseError(fmt::format("The {} refused the user or his password.", server));
    case ServerFailure::NoSuchDatabase:
      return DatabaseError(fmt::format("There is no database {} on the {}.", database, server));
    case ServerFailure::Denied:
      return DatabaseError(fmt::format("The user may not open the database {} on the {}.", database, server));
    default:
      return DatabaseError(fmt::format("The {} cannot be reached: {}{}.", server,
                                       WithoutStop(error.description()),
                                       error.state().empty() ? "" : " (" + error.state() + ")"));
  }
}

void OpenServer(OdbcDatabase& database, const ConnectionSettings& settings) {
  try {
    database.Open(settings);
  } catch (const ServerError& error) {
    database.Close();
    throw NotReached(database.dialect(), settings, error);
  }
}

void OpenServerCompany(OdbcDatabase& database, const ConnectionSettings& settings) {
  OpenServer(database, settings);
  const ServerDialect& dialect = database.dialect();
  const std::string place =
      fmt::format("database {} on the {}", dialect.DatabaseOf(settings), ServerName(dialect, settings));
  try {
    const auto version = VersionOf(database);
    if (version == kSchemaVersion || (!version && dialect.MayLackVersion())) return;
    database.Close();
    if (!version) throw DatabaseError(fmt::format("The {} is no company.", place));
    throw DatabaseError(fmt::format("The {} has schema version {}; this program works with version {}.",
                                    place, *version, kSchemaVersion));
  } catch (const ServerError& error) {
    database.Close();
    throw NotReached(dialect, settings, error);
  }
}

}  // namespace ktl
