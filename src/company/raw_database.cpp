#include "company/raw_database.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>

#include "company/company_error.h"

namespace ktl {

void RawDatabase::Closer::operator()(sqlite3* handle) const { sqlite3_close(handle); }

RawDatabase::RawDatabase(const std::string& file) {
  sqlite3* handle = nullptr;
  const int result =
      sqlite3_open_v2(file.c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  handle_.reset(handle);
  if (result != SQLITE_OK) throw CompanyError(fmt::format("{}: {}", file, sqlite3_errstr(result)));
  Run("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA cache_size = -65536;");
}

void RawDatabase::Run(const std::string& sql) {
  if (sqlite3_exec(handle(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw CompanyError(sqlite3_errmsg(handle()));
  }
}

std::vector<std::string> RawDatabase::Column(const std::string& sql) {
  RawStatement statement(*this, sql);
  std::vector<std::string> values;
  while (statement.Step()) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement.handle(), 0));
    values.emplace_back(text ? text : "");
  }
  return values;
}

void RawStatement::Finalizer::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

RawStatement::RawStatement(RawDatabase& database, const std::string& sql) : database_(database.handle()) {
  sqlite3_stmt* statement = nullptr;
  Check(sqlite3_prepare_v2(database_, sql.c_str(), static_cast<int>(sql.size()), &statement, nullptr));
  handle_.reset(statement);
}

void RawStatement::Bind(int index, std::int64_t value) { Check(sqlite3_bind_int64(handle(), index, value)); }

void RawStatement::Bind(int index, double value) { Check(sqlite3_bind_double(handle(), index, value)); }

void RawStatement::Bind(int index, std::string_view value) {
  Check(sqlite3_bind_text(handle(), index, value.data(), static_cast<int>(value.size()), SQLITE_TRANSIENT));
}

void RawStatement::Bind(int index, std::nullptr_t) { Check(sqlite3_bind_null(handle(), index)); }

void RawStatement::Bind(int index, const std::chrono::year_month_day& value) {
  Bind(index,
       fmt::format("{:04}-{:02}-{:02}", int(value.year()), unsigned(value.month()), unsigned(value.day())));
}

bool RawStatement::Step() {
  const int result = sqlite3_step(handle());
  if (result == SQLITE_ROW) return true;
  if (result != SQLITE_DONE) throw CompanyError(sqlite3_errmsg(database_));
  return false;
}

void RawStatement::Reset() { sqlite3_reset(handle()); }

void RawStatement::Check(int result) const {
  if (result != SQLITE_OK) throw CompanyError(sqlite3_errmsg(database_));
}

RowWriter::RowWriter(RawDatabase& database, const std::string& tableAndColumns)
    : statement_(database, [&] {
        std::string marks = "?";
        const auto columns = 1 + std::count(tableAndColumns.begin(), tableAndColumns.end(), ',');
        for (auto column = columns; column > 1; --column) marks += ", ?";
        return fmt::format("INSERT INTO {} VALUES ({})", tableAndColumns, marks);
      }()) {}

}  // namespace ktl
