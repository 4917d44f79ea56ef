#include "database/drivers/sqlserver_dialect.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <limits>

#include "database/connection_string.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr std::string_view kFreeTds = "FreeTDS";
constexpr std::array<std::string_view, 3> kDriverNames{"ODBC Driver 18 for SQL Server",
                                                       "ODBC Driver 17 for SQL Server", kFreeTds};

// By the numbers of the server.
constexpr std::array kFailures{
    NumberedFailure{18452, ServerFailure::LoginRefused},
    NumberedFailure{18456, ServerFailure::LoginRefused},
    NumberedFailure{18470, ServerFailure::LoginRefused},
    NumberedFailure{18486, ServerFailure::LoginRefused},
    NumberedFailure{18487, ServerFailure::LoginRefused},
    NumberedFailure{18488, ServerFailure::LoginRefused},
    NumberedFailure{911, ServerFailure::NoSuchDatabase},
    NumberedFailure{4060, ServerFailure::NoSuchDatabase},
    NumberedFailure{229, ServerFailure::Denied},
    NumberedFailure{230, ServerFailure::Denied},
    NumberedFailure{262, ServerFailure::Denied},
    NumberedFailure{297, ServerFailure::Denied},
    NumberedFailure{300, ServerFailure::Denied},
    NumberedFailure{3906, ServerFailure::Denied},
    NumberedFailure{916, ServerFailure::Denied},
    NumberedFailure{208, ServerFailure::NoSuchTable},
    NumberedFailure{4701, ServerFailure::NoSuchTable},
    NumberedFailure{3701, ServerFailure::NoSuchTable},
    NumberedFailure{515, ServerFailure::DuplicateKey},
    NumberedFailure{547, ServerFailure::DuplicateKey},
    NumberedFailure{2601, ServerFailure::DuplicateKey},
    NumberedFailure{2627, ServerFailure::DuplicateKey},
    NumberedFailure{1205, ServerFailure::DeadLock},
    NumberedFailure{1222, ServerFailure::LockWait},
    NumberedFailure{2760, ServerFailure::Denied},
    NumberedFailure{596, ServerFailure::ConnectionLost},
    NumberedFailure{4014, ServerFailure::ConnectionLost},
    NumberedFailure{6005, ServerFailure::ConnectionLost},
};

std::string FirstOf(const ConnectionSettings& settings, std::initializer_list<const char*> keys) {
  for (const char* key : keys)
    if (std::string value = ConnectionSetting(settings.connectionString, key); !value.empty()) return value;
  return "";
}

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> words) {
  return std::ranges::any_of(words, [&](std::string_view word) { return EqualsNoCase(word, text); });
}
bool IsYes(std::string_view text) { return IsOneOf(text, {"yes", "true", "1", "SSPI"}); }
bool IsNo(std::string_view text) { return IsOneOf(text, {"no", "false", "0", "optional"}); }

// Where nobody says otherwise, what goes over the wire is encrypted for every server: a certificate that its
// maker alone has signed is taken, as each server has one.
std::string Encryption(const ConnectionSettings& settings, bool isFreeTds) {
  const std::string wanted = FirstOf(settings, {"Encrypt", "Use Encryption for Data"});
  const std::string trusted = FirstOf(settings, {"TrustServerCertificate", "Trust Server Certificate"});
  // What it calls off leaves the password bare as well.
  if (isFreeTds) return IsNo(wanted) ? "Encryption=request;" : "Encryption=require;";
  const std::string encrypt = wanted.empty() || IsYes(wanted) ? "yes" : IsNo(wanted) ? "no" : wanted;
  const bool trusts = trusted.empty() ? wanted.empty() : IsYes(trusted);
  return OdbcPart("Encrypt", encrypt) + (trusts ? "TrustServerCertificate=yes;" : "");
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
  const bool isFreeTds = EqualsNoCase(driver, kFreeTds);
  const bool isTrusted = IsYes(FirstOf(settings, {"Trusted_Connection", "Integrated Security"}));
  const std::string server = ServerOf(settings), port = FirstOf(settings, {"Port"});
  const bool hasPort = server.find(',') != server.npos;
  std::string text = fmt::format("DRIVER={{{}}};", driver) +
                     OdbcPart("SERVER", isFreeTds || hasPort || port.empty() ? server : server + "," + port) +
                     OdbcPart("DATABASE", DatabaseOf(settings)) + part("UID", {"User ID", "UID"}) +
                     part("PWD", {"PWD", "Password"}) + (isTrusted ? "Trusted_Connection=yes;" : "") +
                     Encryption(settings, isFreeTds) + "APP=KTLStIns;" +
                     OdbcPart("WSID", settings.client.hostName);
  // Only this program makes a lost connection anew: it tells so.
  if (!isFreeTds) return text + "ConnectRetryCount=0;";
  // A named instance tells its port itself.
  if (!port.empty() || (!hasPort && server.find('\\') == server.npos))
    text += OdbcPart("PORT", port.empty() ? "1433" : port);
  return text + "TDS_Version=7.4;ClientCharset=UTF-8;";
}

std::vector<std::string> SqlServerDialect::FirstTexts(const ConnectionSettings& settings) const {
  constexpr std::int64_t kLongestWait = std::numeric_limits<std::int32_t>::max();
  const std::int64_t wait =
      settings.commandTimeout > 0 ? std::min(settings.commandTimeout * std::int64_t{1000}, kLongestWait) : -1;
  // Dates stand in texts as 26/Apr/2010 and 2010-04-26: under another language than this one the server takes
  // the second for the fourth day of a month. An administrator may have changed what sessions begin with.
  return {
      "SET LANGUAGE us_english; "
      "SET ANSI_NULLS, ANSI_PADDING, ANSI_WARNINGS, QUOTED_IDENTIFIER, CONCAT_NULL_YIELDS_NULL ON; "
      "SET NOCOUNT, IMPLICIT_TRANSACTIONS, XACT_ABORT OFF",
      // Whom the company's procedures take for signed on.
      fmt::format(
          "SET LOCK_TIMEOUT {}; SET TRANSACTION ISOLATION LEVEL READ COMMITTED; "
          "DECLARE @user VARBINARY(128); SET @user = CAST(N'{}' AS VARBINARY(128)); SET CONTEXT_INFO @user",
          wait, ReplaceAll(settings.client.userName, "'", "''"))};
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
      "SET NOCOUNT ON; DECLARE @turn INT; BEGIN TRANSACTION; EXEC @turn = sp_getapplock @Resource = "
      "'KTLStIns', @LockMode = 'Exclusive', @LockOwner = 'Transaction', @LockTimeout = {}; "
      "IF @turn < 0 ROLLBACK TRANSACTION; SET NOCOUNT OFF; SELECT CASE WHEN @turn < 0 THEN 0 ELSE 1 END",
      milliseconds);
}

ServerFailure SqlServerDialect::FailureOf(const Diagnostic& diagnostic) const {
  if (const auto known = FailureNumbered(kFailures, diagnostic.native)) return *known;
  if (diagnostic.state == "HYT00" || diagnostic.state == "HYT01" || diagnostic.state == "S1T00")
    return ServerFailure::TimeOut;
  if (diagnostic.state == "08001" || diagnostic.state == "08004") return ServerFailure::Unreachable;
  // IMC0x: a driver that makes lost connections anew has given up.
  if (diagnostic.state.starts_with("08") || diagnostic.state.starts_with("IMC"))
    return ServerFailure::ConnectionLost;
  if (diagnostic.state == "42S02") return ServerFailure::NoSuchTable;
  if (diagnostic.state.starts_with("23")) return ServerFailure::DuplicateKey;
  return diagnostic.state.starts_with("42") || diagnostic.state == "37000" ? ServerFailure::Statement
                                                                           : ServerFailure::Other;
}

}  // namespace ktl
