#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace ktl {

// A new database file, written without a journal: whoever makes it throws the file away when something fails.
// Every failure is a CompanyError.
class RawDatabase final {
 public:
  explicit RawDatabase(const std::string& file);

  void Run(const std::string& sql);
  // The first column of every row, as text.
  std::vector<std::string> Column(const std::string& sql);
  sqlite3* handle() const { return handle_.get(); }

 private:
  struct Closer {
    void operator()(sqlite3* handle) const;
  };
  std::unique_ptr<sqlite3, Closer> handle_;
};

// One prepared statement. Step() is true while there is a row.
class RawStatement final {
 public:
  RawStatement(RawDatabase& database, const std::string& sql);

  void Bind(int index, std::int64_t value);
  void Bind(int index, int value) { Bind(index, std::int64_t{value}); }
  void Bind(int index, bool value) { Bind(index, std::int64_t{value}); }
  void Bind(int index, double value);
  void Bind(int index, std::string_view value);
  void Bind(int index, const char* value) { Bind(index, std::string_view(value)); }
  void Bind(int index, const std::string& value) { Bind(index, std::string_view(value)); }
  void Bind(int index, std::nullptr_t);
  void Bind(int index, const std::chrono::year_month_day& value);  // "2026-03-31"
  template <class T>
  void Bind(int index, const std::optional<T>& value) {
    if (value) {
      Bind(index, *value);
    } else {
      Bind(index, nullptr);
    }
  }

  bool Step();
  void Reset();
  sqlite3_stmt* handle() const { return handle_.get(); }

 private:
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const;
  };
  void Check(int result) const;

  sqlite3* database_;
  std::unique_ptr<sqlite3_stmt, Finalizer> handle_;
};

// Adds rows to one table: RowWriter users(db, "SEC_USERLIST (UserID, USERNAME)"); users(1, "ADMIN");
class RowWriter final {
 public:
  RowWriter(RawDatabase& database, const std::string& tableAndColumns);

  template <class... Values>
  void operator()(const Values&... values) {
    int index = 0;
    (statement_.Bind(++index, values), ...);
    statement_.Step();
    statement_.Reset();
  }

 private:
  RawStatement statement_;
};

}  // namespace ktl
