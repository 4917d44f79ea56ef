#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <cmath>

#include "database/drivers/odbc_database.h"
#include "database/drivers/odbc_text.h"
#include "database/stored_date.h"

namespace ktl {

namespace {

constexpr SQLULEN kLongestBoundText = 1000;  // characters; longer ones are read piece by piece
constexpr std::size_t kPiece = 8192;
constexpr std::size_t kLongestPlainText = 4000;  // that is sent to SQL Server as NVARCHAR

OdbcStatement::Kind KindOf(SQLSMALLINT type, SQLULEN size, SQLSMALLINT decimals) {
  switch (type) {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
      return OdbcStatement::Kind::Integer;
    case SQL_DECIMAL:
    case SQL_NUMERIC:
      return decimals == 0 ? OdbcStatement::Kind::Integer : OdbcStatement::Kind::Real;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return OdbcStatement::Kind::Real;
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIMESTAMP:
      return OdbcStatement::Kind::Date;
    default:
      return size == 0 || size > kLongestBoundText ? OdbcStatement::Kind::LongText
                                                   : OdbcStatement::Kind::Text;
  }
}

Value DateOf(const SQL_TIMESTAMP_STRUCT& time) {
  const auto date = Date::FromYmd(time.year, time.month, time.day, time.hour, time.minute, time.second);
  return date ? Value(*date) : Value(Null{});
}

}  // namespace

struct OdbcStatement::Slot {
  std::string name;
  Kind kind = Kind::Text;
  SQLLEN length = SQL_NULL_DATA;
  SQLBIGINT integer = 0;
  SQLDOUBLE real = 0;
  SQL_TIMESTAMP_STRUCT time{};
  std::string bytes;  // room for a bound text; a long text itself
};

struct OdbcStatement::Parameter {
  SQLLEN length = 0;
  SQLBIGINT integer = 0;
  SQLDOUBLE real = 0;
  SQL_TIMESTAMP_STRUCT time{};
  std::string bytes;
};

OdbcStatement::OdbcStatement(OdbcDatabase& database) : database_(database) {
  SQLHANDLE handle = nullptr;
  CheckOdbc(SQLAllocHandle(SQL_HANDLE_STMT, database.handle(), &handle), OdbcHandle::Connection,
            database.handle(), database.dialect());
  handle_ = OdbcPointer(handle, OdbcFreer{OdbcHandle::Statement});
  // "{" in a text is nothing but itself.
  SQLSetStmtAttr(handle, SQL_ATTR_NOSCAN, reinterpret_cast<SQLPOINTER>(SQL_NOSCAN_ON), 0);
  if (database.commandTimeout() > 0)
    SQLSetStmtAttr(handle, SQL_ATTR_QUERY_TIMEOUT,
                   reinterpret_cast<SQLPOINTER>(static_cast<SQLULEN>(database.commandTimeout())), 0);
}

OdbcStatement::~OdbcStatement() = default;

// Not every driver tells a lost connection by a state of its own.
void OdbcStatement::Check(short code) const {
  try {
    CheckOdbc(code, OdbcHandle::Statement, handle_.get(), database_.dialect());
  } catch (const ServerError& error) {
    if (error.failure() != ServerFailure::Other || !database_.IsDead()) throw;
    throw ServerError(ServerFailure::ConnectionLost, error.description(), error.state());
  }
}

void OdbcStatement::Run(const std::string& sql, std::span<const Value> values, Way way) {
  static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));
  std::u16string wide;
  if (!prepared_) wide = ToUtf16(sql);
  auto* text = reinterpret_cast<SQLWCHAR*>(wide.data());
  const auto length = static_cast<SQLINTEGER>(wide.size());
  if (way == Way::Prepared && !prepared_) {
    Check(SQLPrepareW(handle_.get(), text, length));
    prepared_ = true;
  }
  BindValues(values);
  Check(prepared_ ? SQLExecute(handle_.get()) : SQLExecDirectW(handle_.get(), text, length));
  Describe();
}

void OdbcStatement::AskForKey(const std::string& table) {
  std::u16string name = ToUtf16(table);
  Check(SQLPrimaryKeysW(handle_.get(), nullptr, 0, nullptr, 0, reinterpret_cast<SQLWCHAR*>(name.data()),
                        static_cast<SQLSMALLINT>(name.size())));
  Describe();
}

void OdbcStatement::BindValues(std::span<const Value> values) {
  if (parameters_.size() != values.size()) {
    SQLFreeStmt(handle_.get(), SQL_RESET_PARAMS);
    parameters_ = std::vector<Parameter>(values.size());
  }
  SQLUSMALLINT number = 0;
  for (const Value& value : values) {
    Parameter& sent = parameters_[number++];
    SQLSMALLINT from = SQL_C_SBIGINT, to = SQL_BIGINT, decimals = 0;
    SQLULEN size = 0;
    SQLPOINTER place = &sent.integer;
    sent.length = 0;
    if (value.IsNull() || value.IsEmpty()) {
      sent.length = SQL_NULL_DATA;
      // Of values that stand below one another in VALUES, a number would make numbers of the texts.
      if (!database_.dialect().TakesUtf8()) to = SQL_WVARCHAR, size = 1;
    } else if (value.IsBoolean() || value.IsInteger()) {
      sent.integer = value.IsBoolean() ? (value.boolean() ? 1 : 0) : value.integer();
    } else if (value.IsDouble()) {
      if (!std::isfinite(value.real())) throw DatabaseError("The amount is beyond all bounds.");
      sent.real = value.real();
      from = SQL_C_DOUBLE, to = SQL_DOUBLE, place = &sent.real;
    } else if (value.IsDate()) {
      const Date& d = value.date();
      const auto part = [](int number_) { return static_cast<SQLUSMALLINT>(number_); };
      sent.time = {static_cast<SQLSMALLINT>(d.year()),
                   part(d.month()),
                   part(d.day()),
                   part(d.hour()),
                   part(d.minute()),
                   part(d.second()),
                   0};
      from = SQL_C_TYPE_TIMESTAMP, to = SQL_TYPE_TIMESTAMP, size = 19, place = &sent.time;
    } else if (database_.dialect().TakesUtf8()) {
      sent.bytes = value.text();
      from = SQL_C_CHAR, to = SQL_VARCHAR, size = std::max<SQLULEN>(sent.bytes.size(), 1);
      sent.length = static_cast<SQLLEN>(sent.bytes.size());
      place = sent.bytes.data();
    } else {
      const std::u16string wide = ToUtf16(value.text());
      sent.bytes.assign(reinterpret_cast<const char*>(wide.data()), wide.size() * sizeof(char16_t));
      from = SQL_C_WCHAR, size = std::max<SQLULEN>(wide.size(), 1);
      to = size > kLongestPlainText ? SQL_WLONGVARCHAR : SQL_WVARCHAR;
      sent.length = static_cast<SQLLEN>(sent.bytes.size());
      place = sent.bytes.data();
    }
    Check(SQLBindParameter(handle_.get(), number, SQL_PARAM_INPUT, from, to, size, decimals, place, 0,
                           &sent.length));
  }
}

OdbcStatement::Slot OdbcStatement::Described(std::size_t column) const {
  SQLWCHAR name[256];
  SQLSMALLINT length = 0, type = 0, decimals = 0, nullable = 0;
  SQLULEN size = 0;
  Check(SQLDescribeColW(handle_.get(), static_cast<SQLUSMALLINT>(column + 1), name, 256, &length, &type,
                        &size, &decimals, &nullable));
  Slot slot;
  slot.name = FromUtf16(std::u16string(name, name + std::min<SQLSMALLINT>(length, 255)));
  slot.kind = KindOf(type, size, decimals);
  // A character takes up to four bytes; behind the text comes a zero.
  if (slot.kind == Kind::Text) slot.bytes.resize(size * 4 + 2);
  return slot;
}

// What was bound stays bound as long as the same columns come.
void OdbcStatement::Describe() {
  SQLSMALLINT count = 0;
  Check(SQLNumResultCols(handle_.get(), &count));
  const auto columns = static_cast<std::size_t>(count);
  bool same = columns == columns_.size();
  std::vector<Slot> described(columns);
  for (std::size_t i = 0; i < columns; ++i) {
    described[i] = Described(i);
    same = same && described[i].kind == columns_[i].kind && described[i].name == columns_[i].name &&
           described[i].bytes.size() <= columns_[i].bytes.size();
  }
  if (same) return;
  columns_ = std::move(described);
  SQLFreeStmt(handle_.get(), SQL_UNBIND);
  // What stands behind a long text can only be asked for one by one.
  for (std::size_t i = 0; i < columns && columns_[i].kind != Kind::LongText; ++i) Bind(i);
}

void OdbcStatement::Bind(std::size_t column) {
  Slot& slot = columns_[column];
  const auto bind = [&](SQLSMALLINT type, SQLPOINTER place, std::size_t room) {
    Check(SQLBindCol(handle_.get(), static_cast<SQLUSMALLINT>(column + 1), type, place,
                     static_cast<SQLLEN>(room), &slot.length));
  };
  switch (slot.kind) {
    case Kind::Integer:
      return bind(SQL_C_SBIGINT, &slot.integer, sizeof slot.integer);
    case Kind::Real:
      return bind(SQL_C_DOUBLE, &slot.real, sizeof slot.real);
    case Kind::Date:
      return bind(SQL_C_TYPE_TIMESTAMP, &slot.time, sizeof slot.time);
    default:
      return bind(database_.dialect().TakesUtf8() ? SQL_C_CHAR : SQL_C_WCHAR, slot.bytes.data(),
                  slot.bytes.size());
  }
}

bool OdbcStatement::Fetch() {
  if (columns_.empty()) return false;
  const SQLRETURN code = SQLFetch(handle_.get());
  Check(code);
  if (code == SQL_NO_DATA) return false;
  const auto first = std::ranges::find(columns_, Kind::LongText, &Slot::kind);
  for (auto slot = first; slot != columns_.end(); ++slot)
    ReadUnbound(static_cast<std::size_t>(slot - columns_.begin()));
  return true;
}

void OdbcStatement::ReadUnbound(std::size_t column) {
  Slot& slot = columns_[column];
  const auto number = static_cast<SQLUSMALLINT>(column + 1);
  const auto get = [&](SQLSMALLINT type, SQLPOINTER place, std::size_t room) {
    const SQLRETURN code =
        SQLGetData(handle_.get(), number, type, place, static_cast<SQLLEN>(room), &slot.length);
    Check(code);
    return code;
  };
  switch (slot.kind) {
    case Kind::Integer:
      get(SQL_C_SBIGINT, &slot.integer, sizeof slot.integer);
      return;
    case Kind::Real:
      get(SQL_C_DOUBLE, &slot.real, sizeof slot.real);
      return;
    case Kind::Date:
      get(SQL_C_TYPE_TIMESTAMP, &slot.time, sizeof slot.time);
      return;
    default:
      break;
  }
  const bool narrow = database_.dialect().TakesUtf8();
  const std::size_t zero = narrow ? 1 : sizeof(SQLWCHAR);
  std::string text;
  char piece[kPiece];
  for (;;) {
    const SQLRETURN code = get(narrow ? SQL_C_CHAR : SQL_C_WCHAR, piece, sizeof piece);
    if (code == SQL_NO_DATA || slot.length == SQL_NULL_DATA) break;
    const bool more = slot.length == SQL_NO_TOTAL || slot.length > static_cast<SQLLEN>(sizeof piece - zero);
    text.append(piece, more ? sizeof piece - zero : static_cast<std::size_t>(slot.length));
    if (!more) break;
  }
  if (slot.length == SQL_NULL_DATA) return;
  slot.length = static_cast<SQLLEN>(text.size());
  slot.bytes = std::move(text);
}

Value OdbcStatement::Column(std::size_t column) {
  Slot& slot = columns_[column];
  if (slot.length == SQL_NULL_DATA) return Value(Null{});
  switch (slot.kind) {
    case Kind::Integer:
      return Value(static_cast<long long>(slot.integer));
    case Kind::Real:
      return Value(slot.real);
    case Kind::Date:
      return DateOf(slot.time);
    default:
      break;
  }
  const auto length = static_cast<std::size_t>(slot.length);
  if (slot.length < 0 || length > slot.bytes.size())
    throw DatabaseError("A text of the field " + slot.name + " is longer than the server had told.");
  if (database_.dialect().TakesUtf8()) return Value(std::string_view(slot.bytes).substr(0, length));
  return Value(FromUtf16({reinterpret_cast<const char16_t*>(slot.bytes.data()), length / sizeof(char16_t)}));
}

const std::string& OdbcStatement::ColumnName(std::size_t column) const { return columns_[column].name; }

OdbcStatement::Kind OdbcStatement::ColumnKind(std::size_t column) const { return columns_[column].kind; }

std::size_t OdbcStatement::ColumnCount() const { return columns_.size(); }

std::int64_t OdbcStatement::RowsChanged() const {
  SQLLEN rows = 0;
  Check(SQLRowCount(handle_.get(), &rows));
  return std::max<std::int64_t>(rows, 0);
}

bool OdbcStatement::NextResult() {
  const SQLRETURN code = SQLMoreResults(handle_.get());
  Check(code);
  if (code == SQL_NO_DATA) return false;
  Describe();
  return true;
}

void OdbcStatement::ReadOut() {
  if (Fetch() || !database_.dialect().SpeaksTheLanguage()) return;
  while (NextResult()) {
  }
}

void OdbcStatement::Close() noexcept { SQLFreeStmt(handle_.get(), SQL_CLOSE); }

}  // namespace ktl
