#include "database/drivers/odbc_database.h"

#include <fmt/format.h>
#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <utility>

#include "database/connection_string.h"
#include "database/drivers/odbc_text.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr std::size_t kMostStatements = 128;
constexpr std::size_t kLongestKeptText = 8192;

std::vector<SQLWCHAR> Wide(std::string_view text) {
  const std::u16string wide = ToUtf16(text);
  std::vector<SQLWCHAR> units(wide.begin(), wide.end());
  units.push_back(0);
  return units;
}

std::string Narrow(const SQLWCHAR* text, std::size_t length) {
  return FromUtf16(std::u16string(text, text + length));
}

// "[unixODBC][Driver][Server]" in front of a message tells who passed it on.
std::string WithoutPrefixes(std::string message) {
  while (message.starts_with('[')) {
    const auto end = message.find(']');
    if (end == message.npos) break;
    message.erase(0, end + 1);
  }
  return Trim(message);
}

bool ReadDiagnostic(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT number, Diagnostic& diagnostic) {
  SQLWCHAR state[6]{};
  std::vector<SQLWCHAR> message(1024);
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  if (!SQL_SUCCEEDED(SQLGetDiagRecW(kind, handle, number, state, &native, message.data(),
                                    static_cast<SQLSMALLINT>(message.size()), &length)))
    return false;
  const auto had = std::clamp<std::size_t>(static_cast<std::size_t>(length), 0, message.size() - 1);
  diagnostic.state = Narrow(state, 5);
  diagnostic.native = native;
  diagnostic.message = WithoutPrefixes(Narrow(message.data(), had));
  return true;
}

// How little a failure says beside others that are reported with it: a refused login stands beside a database
// that is not there, a statement that ended beside what ended it.
int Vagueness(ServerFailure failure) {
  switch (failure) {
    case ServerFailure::NoSuchDatabase:
    case ServerFailure::Denied:
      return 0;
    case ServerFailure::Statement:
    case ServerFailure::Unreachable:
      return 2;
    case ServerFailure::Other:
      return 3;
    default:
      return 1;
  }
}

ServerError MostTelling(SQLSMALLINT kind, SQLHANDLE handle, const ServerDialect& dialect) {
  constexpr SQLSMALLINT kMostRead = 10;
  ServerError told(ServerFailure::Other, "");
  Diagnostic diagnostic;
  for (SQLSMALLINT i = 1; i <= kMostRead && ReadDiagnostic(kind, handle, i, diagnostic); ++i) {
    const ServerFailure failure = dialect.FailureOf(diagnostic);
    if (i == 1 || Vagueness(failure) < Vagueness(told.failure()))
      told = ServerError(failure, diagnostic.message, diagnostic.state);
  }
  return told;
}

OdbcPointer Allocate(OdbcHandle kind, void* parent, const ServerDialect& dialect, OdbcHandle parentKind) {
  SQLHANDLE handle = nullptr;
  CheckOdbc(SQLAllocHandle(static_cast<SQLSMALLINT>(kind), parent, &handle), parentKind, parent, dialect);
  return OdbcPointer(handle, OdbcFreer{kind});
}

SQLPOINTER AsPointer(long number) { return reinterpret_cast<SQLPOINTER>(number); }

}  // namespace

void OdbcFreer::operator()(void* handle) const noexcept {
  SQLFreeHandle(static_cast<SQLSMALLINT>(kind), handle);
}

void CheckOdbc(short code, OdbcHandle kind, void* handle, const ServerDialect& dialect) {
  if (SQL_SUCCEEDED(code) || code == SQL_NO_DATA) return;
  if (handle == nullptr)
    throw ServerError(ServerFailure::Other, "The ODBC driver manager has no memory left.", "HY000");
  throw MostTelling(static_cast<SQLSMALLINT>(kind), handle, dialect);
}

OdbcDatabase::OdbcDatabase(const ServerDialect& dialect) : dialect_(dialect), statements_(kMostStatements) {
  SQLHANDLE handle = nullptr;
  CheckOdbc(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &handle), OdbcHandle::Environment, handle,
            dialect_);
  environment_ = OdbcPointer(handle, OdbcFreer{OdbcHandle::Environment});
  CheckOdbc(SQLSetEnvAttr(handle, SQL_ATTR_ODBC_VERSION, AsPointer(SQL_OV_ODBC3), 0), OdbcHandle::Environment,
            handle, dialect_);
}

OdbcDatabase::~OdbcDatabase() { Close(); }

std::string OdbcDatabase::InstalledDriver(const ConnectionSettings& settings) const {
  if (std::string named = ConnectionSetting(settings.connectionString, "Driver"); !named.empty())
    return named;
  std::vector<std::string> installed;
  SQLWCHAR name[256];
  SQLSMALLINT length = 0;
  for (SQLUSMALLINT direction = SQL_FETCH_FIRST;
       SQL_SUCCEEDED(SQLDriversW(environment_.get(), direction, name, 256, &length, nullptr, 0, nullptr));
       direction = SQL_FETCH_NEXT)
    installed.push_back(Narrow(name, static_cast<std::size_t>(length)));
  for (const auto& wanted : dialect_.DriverNames())
    for (const auto& there : installed)
      if (EqualsNoCase(there, wanted)) return there;
  throw ServerError(ServerFailure::Unreachable, fmt::format("no ODBC driver for {} is installed (package {})",
                                                            dialect_.Product(), dialect_.DriverPackage()));
}

void OdbcDatabase::Open(const ConnectionSettings& settings) {
  Close();
  dialect_.CheckSettings(settings);
  const auto text = Wide(dialect_.OdbcString(settings, InstalledDriver(settings)));
  connection_ = Allocate(OdbcHandle::Connection, environment_.get(), dialect_, OdbcHandle::Environment);
  SQLHDBC handle = connection_.get();
  commandTimeout_ = settings.commandTimeout;
  if (settings.connectionTimeout > 0)
    SQLSetConnectAttr(handle, SQL_ATTR_LOGIN_TIMEOUT, AsPointer(settings.connectionTimeout), 0);
  CheckOdbc(SQLDriverConnectW(handle, nullptr, const_cast<SQLWCHAR*>(text.data()), SQL_NTS, nullptr, 0,
                              nullptr, SQL_DRIVER_NOPROMPT),
            OdbcHandle::Connection, handle, dialect_);
  open_ = true;
  for (const auto& first : dialect_.FirstTexts(settings)) Run(first);
}

void OdbcDatabase::Close() noexcept {
  statements_ = RecentlyUsed<std::shared_ptr<OdbcStatement>>(kMostStatements);
  direct_.reset();
  if (open_) SQLDisconnect(connection_.get());
  open_ = false;
  connection_.reset();
}

void OdbcDatabase::Run(const std::string& sql) {
  if (!direct_) direct_ = std::make_shared<OdbcStatement>(*this);
  const auto statement = direct_.use_count() == 1 ? direct_ : std::make_shared<OdbcStatement>(*this);
  try {
    statement->Run(sql, {}, OdbcStatement::Way::Direct);
    do
      while (statement->Fetch()) {
      }
    // MariaDB's driver falls over when it is asked for more of a text that cannot be prepared, as CREATE
    // TRIGGER.
    while (dialect_.SpeaksTheLanguage() && statement->NextResult());
  } catch (const DatabaseError&) {
    statement->Close();
    throw;
  }
  statement->Close();
}

bool OdbcDatabase::IsDead() const {
  SQLUINTEGER dead = SQL_CD_FALSE;
  SQLINTEGER length = 0;
  return SQL_SUCCEEDED(
             SQLGetConnectAttrW(connection_.get(), SQL_ATTR_CONNECTION_DEAD, &dead, sizeof dead, &length)) &&
         dead == SQL_CD_TRUE;
}

std::int64_t OdbcDatabase::Number(const std::string& sql) {
  Lease statement(*this, sql);
  if (!statement->Fetch()) return 0;
  const auto number = static_cast<std::int64_t>(statement->Column(0).NumberOr0());
  statement->ReadOut();
  return number;
}

std::vector<std::string> OdbcDatabase::KeyOf(const std::string& table) {
  constexpr std::size_t kName = 3, kPlace = 4;
  OdbcStatement statement(*this);
  statement.AskForKey(table);
  std::vector<std::pair<double, std::string>> columns;
  while (statement.Fetch())
    columns.emplace_back(statement.Column(kPlace).NumberOr0(), statement.Column(kName).TextOrEmpty());
  std::ranges::sort(columns);
  std::vector<std::string> names;
  for (auto& column : columns) names.push_back(std::move(column.second));
  return names;
}

OdbcDatabase::Lease::Lease(OdbcDatabase& database, const std::string& sql, std::span<const Value> values,
                           bool planAnew) {
  const auto isFree = [](const auto& statement) { return statement && statement.use_count() == 1; };
  // SQL Server runs what is prepared as a procedure: no transaction can begin in one.
  const bool mayKeep = !planAnew && !database.dialect().SpeaksTheLanguage() && sql.size() <= kLongestKeptText;
  auto* kept = mayKeep ? database.statements_.Find(sql) : nullptr;
  if (kept != nullptr && *kept == nullptr) *kept = std::make_shared<OdbcStatement>(database);
  auto& wanted = kept != nullptr ? *kept : database.direct_;
  const bool asKept = kept != nullptr && isFree(wanted);
  if (kept == nullptr && mayKeep) database.statements_.Keep(sql, nullptr);
  if (kept == nullptr && !wanted) wanted = std::make_shared<OdbcStatement>(database);
  statement_ = isFree(wanted) ? wanted : std::make_shared<OdbcStatement>(database);
  statement_->Run(sql, values, asKept ? OdbcStatement::Way::Prepared : OdbcStatement::Way::Direct);
}

}  // namespace ktl
