#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "database/drivers/sqlite_database.h"

namespace ktl {

// A new file, written without a journal: whoever makes it throws the file away when something fails.
SqliteDatabase MakeUnjournaled(const std::string& file);

// The first column of every row, as text.
std::vector<std::string> FirstColumn(SqliteDatabase& database, const std::string& sql);

// Adds rows to one table: RowWriter users(db, "SEC_USERLIST (UserID, USERNAME)"); users(1, "ADMIN");
class RowWriter final {
 public:
  RowWriter(SqliteDatabase& database, const std::string& tableAndColumns);

  template <class... Values>
  void operator()(const Values&... values) {
    std::size_t column = 0;
    (Bind(column++, values), ...);
    statement_.Step();
    statement_.Reset();
  }

 private:
  void Bind(std::size_t column, std::int64_t value) { statement_.BindInteger(column, value); }
  void Bind(std::size_t column, int value) { statement_.BindInteger(column, value); }
  void Bind(std::size_t column, bool value) { statement_.BindInteger(column, value ? 1 : 0); }
  void Bind(std::size_t column, double value) { statement_.BindReal(column, value); }
  void Bind(std::size_t column, std::string_view value) { statement_.BindText(column, value); }
  void Bind(std::size_t column, const char* value) { statement_.BindText(column, value); }
  void Bind(std::size_t column, const std::string& value) { statement_.BindText(column, value); }
  void Bind(std::size_t column, std::nullptr_t) { statement_.BindNull(column); }
  void Bind(std::size_t column, const std::chrono::year_month_day& value);  // "2026-03-31"
  template <class T>
  void Bind(std::size_t column, const std::optional<T>& value) {
    if (value) {
      Bind(column, *value);
    } else {
      statement_.BindNull(column);
    }
  }

  SqliteStatement statement_;
};

}  // namespace ktl
