#include "database/drivers/sqlserver_dialect.h"

#include <fmt/format.h>

#include <array>

#include "database/connection_string.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr std::array<std::string_view, 3> kDriverNames{"ODBC Driver 18 for SQL Server",
                                                       "ODBC Driver 17 for SQL Server", "FreeTDS"};

std::string FirstOf(const ConnectionSettings& settings, std::initializer_list<const char*> keys) {
  for (const char* key : keys)
    if (std::string value = ConnectionSetting(settings.connectionString, key); !value.empty()) return value;
  return "";
}

}  // namespace

std::span<const std::string_view> SqlServerDialect::DriverNames() const { return kDriverNames; }

std::string SqlServerDialect::ServerOf(const ConnectionSettings& settings) const {
  return FirstOf(settings, {"Server", "Data Source"});
}

std::string SqlServerDialect::DatabaseOf(const ConnectionSettings& settings) const {
  return FirstOf(settings, {"Database", "Initial Catalog"});
}

std::string SqlServerDialect::OdbcString(const ConnectionSettings& settings, std::string_view driver) const {
  const auto part = [&](std::string_view odbc, std::initializer_list<const char*> keys) {
    return OdbcPart(odbc, FirstOf(settings, keys));
  };
  const std::string server = ServerOf(settings);
  std::string text = OdbcPart("DRIVER", driver) + OdbcPart("SERVER", server) +
                     OdbcPart("DATABASE", DatabaseOf(settings)) + part("UID", {"User ID", "UID"}) +
                     part("PWD", {"PWD", "Password"}) + part("Trusted_Connection", {"Trusted_Connection"}) +
                     part("Encrypt", {"Encrypt", "Use Encryption for Data"}) +
                     part("TrustServerCertificate", {"TrustServerCertificate"}) + "APP=KTLStIns;" +
                     OdbcPart("WSID", settings.client.hostName);
  if (!EqualsNoCase(driver, "FreeTDS")) return text;
  // A named instance tells its port itself.
  const std::string port = FirstOf(settings, {"Port"});
  if (!port.empty() || server.find_first_of("\\,") == server.npos)
    text += OdbcPart("PORT", port.empty() ? "1433" : port);
  return text + "TDS_Version=7.4;ClientCharset=UTF-8;";
}

std::vector<std::string> SqlServerDialect::FirstTexts(const ConnectionSettings& settings) const {
  const int seconds = settings.commandTimeout;
  return {"SET ANSI_NULLS, ANSI_PADDING, ANSI_WARNINGS, QUOTED_IDENTIFIER, CONCAT_NULL_YIELDS_NULL ON",
          seconds > 0 ? fmt::format("SET LOCK_TIMEOUT {}", std::int64_t{seconds} * 1000)
                      : std::string("SET LOCK_TIMEOUT -1"),
          "SET TRANSACTION ISOLATION LEVEL READ COMMITTED"};
}

tsql::Program SqlServerDialect::Translate(std::string_view sql, bool, int) const {
  tsql::Program program(1);
  program.front().sql = sql;
  return program;
}

std::string SqlServerDialect::TableName(std::string_view name) const { return std::string(name); }

std::string SqlServerDialect::Quoted(std::string_view name) const {
  return "[" + ReplaceAll(std::string(name), "]", "]]") + "]";
}

std::string SqlServerDialect::InsertOfDefaults(const std::string& quotedTable) const {
  return "INSERT INTO " + quotedTable + " DEFAULT VALUES";
}

std::string SqlServerDialect::BeginText(int milliseconds) const {
  return fmt::format(
      "SET NOCOUNT ON DECLARE @turn INT BEGIN TRANSACTION EXEC @turn = sp_getapplock @Resource = 'KTLStIns', "
      "@LockMode = 'Exclusive', @LockOwner = 'Transaction', @LockTimeout = {} "
      "IF @turn < 0 ROLLBACK TRANSACTION SET NOCOUNT OFF SELECT CASE WHEN @turn < 0 THEN 0 ELSE 1 END",
      milliseconds);
}

ServerFailure SqlServerDialect::FailureOf(const Diagnostic& diagnostic) const {
  switch (diagnostic.native) {
    case 18452:
    case 18456:
    case 18470:
    case 18486:
    case 18487:
    case 18488:
      return ServerFailure::LoginRefused;
    case 911:
    case 4060:
      return ServerFailure::NoSuchDatabase;
    case 229:
    case 230:
    case 262:
    case 297:
    case 300:
    case 3906:
    case 916:
      return ServerFailure::Denied;
    case 208:
    case 4701:
    case 3701:
      return ServerFailure::NoSuchTable;
    case 515:
    case 547:
    case 2601:
    case 2627:
      return ServerFailure::DuplicateKey;
    case 1205:
      return ServerFailure::DeadLock;
    case 1222:
      return ServerFailure::LockWait;
    default:
      break;
  }
  if (diagnostic.state == "HYT00" || diagnostic.state == "HYT01" || diagnostic.state == "S1T00")
    return ServerFailure::TimeOut;
  if (diagnostic.state == "08001" || diagnostic.state == "08004") return ServerFailure::Unreachable;
  if (diagnostic.state.starts_with("08")) return ServerFailure::ConnectionLost;
  if (diagnostic.state == "42S02") return ServerFailure::NoSuchTable;
  if (diagnostic.state.starts_with("23")) return ServerFailure::DuplicateKey;
  return diagnostic.state.starts_with("42") || diagnostic.state == "37000" ? ServerFailure::Statement
                                                                           : ServerFailure::Other;
}

}  // namespace ktl
