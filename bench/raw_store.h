#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <stdexcept>

namespace ktl {

// A company through the bare library, opened as the program opens it: what a floor is measured with.
class RawStore {
 public:
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Finalizer>;

  explicit RawStore(const std::filesystem::path& company) {
    sqlite3* store = nullptr;
    sqlite3_open(company.c_str(), &store);
    store_.reset(store);
    sqlite3_exec(store, "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; PRAGMA cache_size = -32000",
                 nullptr, nullptr, nullptr);
  }

  Statement Prepare(const char* sql) const {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(store_.get(), sql, -1, &statement, nullptr) != SQLITE_OK) Fail();
    return Statement(statement);
  }

  // A change, its own commit; parameters not given are null.
  template <typename... Values>
  void Run(const Statement& statement, Values... values) const {
    sqlite3_clear_bindings(statement.get());
    int index = 0;
    (Bind(statement.get(), ++index, values), ...);
    if (sqlite3_step(statement.get()) != SQLITE_DONE || sqlite3_changes(store_.get()) == 0) Fail();
    sqlite3_reset(statement.get());
  }

  // A statement that changes no row, as BEGIN and COMMIT.
  void Step(const Statement& statement) const {
    if (sqlite3_step(statement.get()) != SQLITE_DONE) Fail();
    sqlite3_reset(statement.get());
  }

  // The rows of a query, every column looked at.
  template <typename... Values>
  int Read(const Statement& statement, Values... values) const {
    int index = 0;
    (Bind(statement.get(), ++index, values), ...);
    int rows = 0;
    for (; sqlite3_step(statement.get()) == SQLITE_ROW; ++rows) {
      for (int column = 0; column < sqlite3_column_count(statement.get()); ++column)
        seen_ += sqlite3_column_text(statement.get(), column) != nullptr;
    }
    sqlite3_reset(statement.get());
    return rows;
  }

 private:
  struct Closer {
    void operator()(sqlite3* store) const { sqlite3_close(store); }
  };

  static void Bind(sqlite3_stmt* statement, int index, int value) {
    sqlite3_bind_int(statement, index, value);
  }
  static void Bind(sqlite3_stmt* statement, int index, double value) {
    sqlite3_bind_double(statement, index, value);
  }
  [[noreturn]] void Fail() const { throw std::runtime_error(sqlite3_errmsg(store_.get())); }

  std::unique_ptr<sqlite3, Closer> store_;
  mutable long seen_ = 0;
};

}  // namespace ktl
