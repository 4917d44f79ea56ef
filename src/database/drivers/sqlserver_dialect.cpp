#include "database/drivers/sqlserver_dialect.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "database/connection_string.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr std::array<std::string_view, 3> kDriverNames{"ODBC Driver 18 for SQL Server",
                                                       "ODBC Driver 17 for SQL Server", "FreeTDS"};

struct NumberedFailure {
  long number;
  ServerFailure failure;
};

// By the numbers of the server.
constexpr std::array kFailures{
    NumberedFailure{18452, ServerFailure::LoginRefused}, NumberedFailure{18456, ServerFailure::LoginRefused},
    NumberedFailure{18470, ServerFailure::LoginRefused}, NumberedFailure{18486, ServerFailure::LoginRefused},
    NumberedFailure{18487, ServerFailure::LoginRefused}, NumberedFailure{18488, ServerFailure::LoginRefused},
    NumberedFailure{911, ServerFailure::NoSuchDatabase}, NumberedFailure{4060, ServerFailure::NoSuchDatabase},
    NumberedFailure{229, ServerFailure::Denied},         NumberedFailure{230, ServerFailure::Denied},
    NumberedFailure{262, ServerFailure::Denied},         NumberedFailure{297, ServerFailure::Denied},
    NumberedFailure{300, ServerFailure::Denied},         NumberedFailure{3906, ServerFailure::Denied},
    NumberedFailure{916, ServerFailure::Denied},         NumberedFailure{208, ServerFailure::NoSuchTable},
    NumberedFailure{4701, ServerFailure::NoSuchTable},   NumberedFailure{3701, ServerFailure::NoSuchTable},
    NumberedFailure{515, ServerFailure::DuplicateKey},   NumberedFailure{547, ServerFailure::DuplicateKey},
    NumberedFailure{2601, ServerFailure::DuplicateKey},  NumberedFailure{2627, ServerFailure::DuplicateKey},
    NumberedFailure{1205, ServerFailure::DeadLock},      NumberedFailure{1222, ServerFailure::LockWait},
};

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
  std::string text = fmt::format("DRIVER={{{}}};", driver) + OdbcPart("SERVER", server) +
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
          // Whom the company's procedures take for signed on.
          fmt::format("DECLARE @user VARBINARY(128) = CAST('{}' AS VARBINARY(128)) SET CONTEXT_INFO @user",
                      ReplaceAll(settings.client.userName, "'", "''")),
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
  const auto known = std::ranges::find(kFailures, diagnostic.native, &NumberedFailure::number);
  if (known != kFailures.end()) return known->failure;
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
