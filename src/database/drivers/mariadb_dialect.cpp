#include "database/drivers/mariadb_dialect.h"

#include <fmt/format.h>

#include <array>
#include <chrono>

#include "database/connection_string.h"
#include "database/drivers/mariadb_writer.h"
#include "database/stored_date.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr std::array<std::string_view, 5> kDriverNames{"MariaDB Unicode", "MariaDB ODBC 3.2 Driver",
                                                       "MariaDB ODBC 3.1 Driver", "MariaDB", "MariaDB ODBC"};

// Rows found are counted, not rows that came out different; rows are read one by one as they come.
constexpr unsigned kFoundRows = 2, kNoCache = 1U << 20U, kForwardOnly = 1U << 21U;

constexpr std::string_view kSqlMode =
    "STRICT_ALL_TABLES,NO_BACKSLASH_ESCAPES,SIMULTANEOUS_ASSIGNMENT,NO_ZERO_DATE,NO_ZERO_IN_DATE";

// Beyond what the server itself waits, the network may be dead.
constexpr int kNetworkPatience = 10;  // seconds

// Nobody else is in the midst of writing: the turn goes by this name, one for each database.
constexpr const char* kTurn = "CONCAT('ktl.', MD5(DATABASE()))";

std::string Literal(std::string_view text) { return "'" + ReplaceAll(std::string(text), "'", "''") + "'"; }

std::string FirstOf(const ConnectionSettings& settings, std::initializer_list<const char*> keys) {
  for (const char* key : keys)
    if (std::string value = ConnectionSetting(settings.connectionString, key); !value.empty()) return value;
  return "";
}

// A clock that is not the machine's own holds for the server too.
std::string SetClock(const ConnectionSettings& settings) {
  if (!settings.client.now) return "NULL";
  const Date told = settings.client.now();
  const auto real =
      std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch());
  constexpr double kDayZero = 25569, kSecondsOfDay = 86400;
  const double days = told.serial() - kDayZero - static_cast<double>(real.count()) / kSecondsOfDay;
  return days > -2 && days < 2 ? "NULL" : Literal(StoredDate(told));
}

}  // namespace

std::span<const std::string_view> MariaDbDialect::DriverNames() const { return kDriverNames; }

std::string MariaDbDialect::ServerOf(const ConnectionSettings& settings) const {
  const std::string server = FirstOf(settings, {"Server", "Data Source"});
  return server.empty() ? "localhost" : server;
}

std::string MariaDbDialect::DatabaseOf(const ConnectionSettings& settings) const {
  return FirstOf(settings, {"Database", "Initial Catalog"});
}

std::string MariaDbDialect::OdbcString(const ConnectionSettings& settings, std::string_view driver) const {
  const auto part = [&](std::string_view odbc, std::initializer_list<const char*> keys) {
    return OdbcPart(odbc, FirstOf(settings, keys));
  };
  std::string text = OdbcPart("DRIVER", driver) + OdbcPart("SERVER", ServerOf(settings)) +
                     OdbcPart("DATABASE", DatabaseOf(settings)) + part("PORT", {"Port"}) +
                     part("SOCKET", {"Socket"}) + part("UID", {"User ID", "UID"}) +
                     part("PWD", {"PWD", "Password"}) + part("SSLCA", {"SSL CA"}) +
                     part("SSLCERT", {"SSL Cert"}) + part("SSLKEY", {"SSL Key"});
  if (EqualsNoCase(FirstOf(settings, {"SSL Verify"}), "yes")) text += "FORCETLS=1;SSLVERIFY=1;";
  if (settings.commandTimeout > 0)
    text += fmt::format("READ_TIMEOUT={0};WRITE_TIMEOUT={0};", settings.commandTimeout + kNetworkPatience);
  return text + fmt::format("CHARSET=utf8mb4;OPTION={};", kFoundRows | kNoCache | kForwardOnly);
}

std::vector<std::string> MariaDbDialect::FirstTexts(const ConnectionSettings& settings) const {
  const int seconds = settings.commandTimeout;
  const std::string waits =
      seconds > 0 ? fmt::format("max_statement_time={0}, innodb_lock_wait_timeout={0}, lock_wait_timeout={0}",
                                seconds)
                  : std::string("max_statement_time=0");
  // A literal has the collation that its connection had before its text: the first text stands alone. A
  // derived table is worked out once, not wherever one of its columns is named.
  return {"SET SESSION collation_connection=utf8mb4_uca1400_as_ci, optimizer_switch='derived_merge=off'",
          fmt::format(
              "SET SESSION sql_mode='{}', wait_timeout=31536000, {}, @KTL_HOST={}, @KTL_USER={}, @KTL_NOW={}",
              kSqlMode, waits, Literal(settings.client.hostName), Literal(settings.client.userName),
              SetClock(settings)),
          "SET SESSION TRANSACTION ISOLATION LEVEL READ COMMITTED"};
}

tsql::Program MariaDbDialect::Translate(std::string_view sql, bool updatable, int parameters) const {
  return MariaDbWriter(sql).Translate(updatable, parameters);
}

std::string MariaDbDialect::Quoted(std::string_view name) const {
  return "`" + ReplaceAll(std::string(name), "`", "``") + "`";
}

std::string MariaDbDialect::TableName(std::string_view name) const { return UpperCase(name); }

std::string MariaDbDialect::InsertOfDefaults(const std::string& quotedTable) const {
  return "INSERT INTO " + quotedTable + " () VALUES ()";
}

std::string MariaDbDialect::BeginText(int milliseconds) const {
  return fmt::format(
      "BEGIN NOT ATOMIC IF GET_LOCK({}, {}.{:03}) THEN START TRANSACTION; SELECT 1; ELSE SELECT 0; END IF; END",
      kTurn, milliseconds / 1000, milliseconds % 1000);
}

std::string MariaDbDialect::CommitText() const {
  return fmt::format("BEGIN NOT ATOMIC COMMIT; DO RELEASE_LOCK({}); END", kTurn);
}

std::string MariaDbDialect::RollbackText() const {
  return fmt::format("BEGIN NOT ATOMIC ROLLBACK; DO RELEASE_LOCK({}); END", kTurn);
}

ServerFailure MariaDbDialect::FailureOf(const Diagnostic& diagnostic) const {
  switch (diagnostic.native) {
    case 1045:
    case 1698:
      return ServerFailure::LoginRefused;
    case 1044:
    case 1142:
    case 1143:
    case 1227:
    case 1290:
    case 1370:
    case 1792:
    case 1836:
      return ServerFailure::Denied;
    case 1049:
      return ServerFailure::NoSuchDatabase;
    case 1051:
    case 1109:
    case 1146:
      return ServerFailure::NoSuchTable;
    case 1022:
    case 1048:
    case 1062:
    case 1364:
    case 1451:
    case 1452:
    case 1586:
    case 4025:
      return ServerFailure::DuplicateKey;
    case 1305:
      return ServerFailure::NoSuchProcedure;
    case 1213:
      return ServerFailure::DeadLock;
    case 1205:
      return ServerFailure::LockWait;
    case 1969:
    case 3024:
      return ServerFailure::TimeOut;
    case 2002:
    case 2003:
    case 2005:
    case 1040:
    case 1129:
    case 1130:
    case 1203:
    case 1226:
      return ServerFailure::Unreachable;
    case 1053:
    case 1077:
    case 1080:
    case 1152:
    case 1158:
    case 1159:
    case 1160:
    case 1161:
    case 1184:
    case 1927:
    case 2006:
    case 2013:
    case 2055:
      return ServerFailure::ConnectionLost;
    default:
      break;
  }
  if (diagnostic.state.starts_with("08")) return ServerFailure::ConnectionLost;
  return diagnostic.state.starts_with("42") ? ServerFailure::Statement : ServerFailure::Other;
}

}  // namespace ktl
