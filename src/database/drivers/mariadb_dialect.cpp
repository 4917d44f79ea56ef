#include "database/drivers/mariadb_dialect.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <fstream>

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

// Beyond what the server itself waits, it hangs or the network is dead. In seconds.
int Patience(int commandTimeout) { return commandTimeout + std::clamp(commandTimeout, 2, 10); }

// Nobody else is in the midst of writing: the turn goes by this name, one for each database.
constexpr const char* kTurn = "CONCAT('ktl.', MD5(DATABASE()))";

// By the numbers of the server and of its client library.
constexpr std::array kFailures{
    NumberedFailure{1045, ServerFailure::LoginRefused},
    NumberedFailure{1698, ServerFailure::LoginRefused},
    NumberedFailure{1044, ServerFailure::Denied},
    NumberedFailure{1142, ServerFailure::Denied},
    NumberedFailure{1143, ServerFailure::Denied},
    NumberedFailure{1227, ServerFailure::Denied},
    NumberedFailure{1290, ServerFailure::Denied},
    NumberedFailure{1370, ServerFailure::Denied},
    NumberedFailure{1792, ServerFailure::Denied},
    NumberedFailure{1836, ServerFailure::Denied},
    NumberedFailure{1049, ServerFailure::NoSuchDatabase},
    NumberedFailure{1051, ServerFailure::NoSuchTable},
    NumberedFailure{1109, ServerFailure::NoSuchTable},
    NumberedFailure{1146, ServerFailure::NoSuchTable},
    NumberedFailure{1022, ServerFailure::DuplicateKey},
    NumberedFailure{1048, ServerFailure::DuplicateKey},
    NumberedFailure{1062, ServerFailure::DuplicateKey},
    NumberedFailure{1364, ServerFailure::DuplicateKey},
    NumberedFailure{1451, ServerFailure::DuplicateKey},
    NumberedFailure{1452, ServerFailure::DuplicateKey},
    NumberedFailure{1586, ServerFailure::DuplicateKey},
    NumberedFailure{4025, ServerFailure::DuplicateKey},
    NumberedFailure{1305, ServerFailure::NoSuchProcedure},
    NumberedFailure{1213, ServerFailure::DeadLock},
    NumberedFailure{1205, ServerFailure::LockWait},
    NumberedFailure{1969, ServerFailure::TimeOut},
    NumberedFailure{3024, ServerFailure::TimeOut},
    NumberedFailure{2002, ServerFailure::Unreachable},
    NumberedFailure{2003, ServerFailure::Unreachable},
    NumberedFailure{2005, ServerFailure::Unreachable},
    NumberedFailure{1040, ServerFailure::Unreachable},
    NumberedFailure{1129, ServerFailure::Unreachable},
    NumberedFailure{1130, ServerFailure::Unreachable},
    NumberedFailure{1203, ServerFailure::Unreachable},
    NumberedFailure{1226, ServerFailure::Unreachable},
    NumberedFailure{1053, ServerFailure::ConnectionLost},
    NumberedFailure{1077, ServerFailure::ConnectionLost},
    NumberedFailure{1080, ServerFailure::ConnectionLost},
    NumberedFailure{1152, ServerFailure::ConnectionLost},
    NumberedFailure{1158, ServerFailure::ConnectionLost},
    NumberedFailure{1159, ServerFailure::ConnectionLost},
    NumberedFailure{1160, ServerFailure::ConnectionLost},
    NumberedFailure{1161, ServerFailure::ConnectionLost},
    NumberedFailure{1184, ServerFailure::ConnectionLost},
    NumberedFailure{1927, ServerFailure::ConnectionLost},
    NumberedFailure{2006, ServerFailure::ConnectionLost},
    NumberedFailure{2013, ServerFailure::ConnectionLost},
    NumberedFailure{2055, ServerFailure::ConnectionLost},
    NumberedFailure{2012, ServerFailure::ConnectionLost},
    NumberedFailure{2014, ServerFailure::ConnectionLost},
    NumberedFailure{2027, ServerFailure::ConnectionLost},
    NumberedFailure{5013, ServerFailure::ConnectionLost},
    NumberedFailure{5014, ServerFailure::ConnectionLost},
};

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

// Its client library takes another port for one that is none, and tells of no file by its name.
void MariaDbDialect::CheckSettings(const ConnectionSettings& settings) const {
  if (DatabaseOf(settings).empty()) throw DatabaseError("The connection string names no database.");
  if (const std::string port = FirstOf(settings, {"Port"}); !port.empty()) {
    std::uint16_t number = 0;
    const char* end = port.data() + port.size();
    if (std::from_chars(port.data(), end, number) != std::from_chars_result{end, std::errc()} || number == 0)
      throw DatabaseError(
          fmt::format("Port={} in the connection string is no number from 1 to 65535.", port));
  }
  for (const char* key : {"SSL CA", "SSL Cert", "SSL Key"})
    if (const std::string file = FirstOf(settings, {key}); !file.empty() && !std::ifstream(file).is_open())
      throw DatabaseError(
          fmt::format("{}={} in the connection string: there is no such file to read.", key, file));
}

std::string MariaDbDialect::OdbcString(const ConnectionSettings& settings, std::string_view driver) const {
  const auto part = [&](std::string_view odbc, std::initializer_list<const char*> keys) {
    return OdbcPart(odbc, FirstOf(settings, keys));
  };
  std::string text = fmt::format("DRIVER={{{}}};", driver) + OdbcPart("SERVER", ServerOf(settings)) +
                     OdbcPart("DATABASE", DatabaseOf(settings)) + part("PORT", {"Port"}) +
                     part("SOCKET", {"Socket"}) + part("UID", {"User ID", "UID"}) +
                     part("PWD", {"PWD", "Password"}) + part("SSLCA", {"SSL CA"}) +
                     part("SSLCERT", {"SSL Cert"}) + part("SSLKEY", {"SSL Key"});
  if (EqualsNoCase(FirstOf(settings, {"SSL Verify"}), "yes")) text += "FORCETLS=1;SSLVERIFY=1;";
  // Its driver does not mind the attribute of the same meaning.
  if (settings.connectionTimeout > 0) text += fmt::format("CONN_TIMEOUT={};", settings.connectionTimeout);
  if (settings.commandTimeout > 0)
    text += fmt::format("READ_TIMEOUT={0};WRITE_TIMEOUT={0};", Patience(settings.commandTimeout));
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
  if (const auto known = FailureNumbered(kFailures, diagnostic.native)) return *known;
  if (diagnostic.state.starts_with("08")) return ServerFailure::ConnectionLost;
  return diagnostic.state.starts_with("42") ? ServerFailure::Statement : ServerFailure::Other;
}

}  // namespace ktl
