#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "database/database_error.h"
#include "database/drivers/recently_used.h"
#include "runtime/value.h"

struct sqlite3;
struct sqlite3_stmt;

namespace ktl {

// One prepared statement of the embedded database. Parameters and columns count from 0.
class SqliteStatement {
 public:
  SqliteStatement(sqlite3* database, std::string_view sql);

  // True while there is a row.
  bool Step();
  void Reset() noexcept;
  void Bind(std::size_t parameter, const Value& value);
  void BindInteger(std::size_t parameter, std::int64_t number);
  void BindReal(std::size_t parameter, double number);  // an infinite number is an error
  void BindText(std::size_t parameter, std::string_view text);
  void BindNull(std::size_t parameter);

  std::size_t ColumnCount() const;
  std::string ColumnName(std::size_t column) const;
  bool IsDeclaredDate(std::size_t column) const;
  // date: a text in the stored form of dates is a date. An infinite number is an error.
  Value Column(std::size_t column, bool date = false) const;
  std::int64_t Integer(std::size_t column) const;

 private:
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const noexcept;
  };
  void Check(int code) const;

  std::unique_ptr<sqlite3_stmt, Finalizer> handle_;
};

// An open file of the embedded database. Prepared statements are kept for the next use of the same text.
class SqliteDatabase {
 public:
  // A statement in use; reset when the lease ends. A text leased twice at a time gets two statements.
  class Lease {
   public:
    Lease(SqliteDatabase& database, std::string_view sql);
    ~Lease() { statement_->Reset(); }
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;
    SqliteStatement* operator->() { return statement_.get(); }
    SqliteStatement& operator*() { return *statement_; }

   private:
    std::shared_ptr<SqliteStatement> statement_;
  };

  enum class Mode { Existing, New };

  // Throws DatabaseError when the file cannot be opened. Mode::New makes an empty file.
  SqliteDatabase(const std::string& file, Mode mode);

  sqlite3* handle() const { return handle_.get(); }
  // How long a statement waits for another writer, and who is asked meanwhile; false gives up.
  void SetBusyTimeout(int seconds);
  void SetOnWait(std::function<bool(std::chrono::milliseconds waited)> onWait);
  // Who is told, several times a second, that a statement is at work.
  void SetOnWork(std::function<void()> onWork);
  bool IsReadOnly() const;
  bool InTransaction() const;

  // Runs a statement of the embedded dialect to its end.
  void Run(std::string_view sql, const std::vector<Value>& parameters = {});
  // Several statements, one after another.
  void RunScript(const std::string& script);
  std::int64_t Number(std::string_view sql);
  std::string Text(std::string_view sql);
  // Of the statement run last; 0 when nothing has changed since the count given.
  std::int64_t ChangesSince(std::int64_t totalChanges) const;
  std::int64_t TotalChanges() const;
  std::int64_t LastRowId() const;
  // Commits are only written to the log; this waits until it is on the disk.
  void FlushLog();
  // What stands in the log is carried over into the file by the commit that makes it as long as the limit of
  // one event, and at the end of an event that leaves it longer than the limit between events: as far as
  // nobody reads what is in the file now. Nothing is lost where it fails: the log stays.
  void LimitLog();
  void EndEvent() noexcept;

 private:
  struct Closer {
    void operator()(sqlite3* database) const noexcept;
  };
  struct Patience {
    std::chrono::milliseconds limit{0};
    std::function<bool(std::chrono::milliseconds waited)> onWait;
    std::chrono::steady_clock::time_point since{};
  };
  struct Work {
    std::function<void()> onWork;
    std::chrono::steady_clock::time_point lookedAt{}, toldAt{};
  };
  struct Log {
    int pages = 0;  // as the last commit made here left it; 0 when it was carried over since
  };
  static int KeepWaiting(void* patience, int calls) noexcept;
  static int KeepWorking(void* work) noexcept;
  static int TakeCommit(void* log, sqlite3* database, const char* name, int pages) noexcept;

  std::unique_ptr<Log> log_ = std::make_unique<Log>();
  std::unique_ptr<Work> work_ = std::make_unique<Work>();
  std::unique_ptr<Patience> patience_ = std::make_unique<Patience>();  // before the handle that points at it
  std::unique_ptr<sqlite3, Closer> handle_;
  RecentlyUsed<std::shared_ptr<SqliteStatement>> statements_;
};

// The one place where return codes become errors.
void CheckSqlite(int code, sqlite3* database);

}  // namespace ktl
