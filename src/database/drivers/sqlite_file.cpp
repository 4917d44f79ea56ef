#include "database/drivers/sqlite_file.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <filesystem>

#include "database/drivers/sqlite_functions.h"

namespace ktl {

namespace {

void RequireFile(const std::string& file) {
  std::error_code error;
  const auto status = std::filesystem::status(file, error);
  if (file.empty()) throw DatabaseError("The connection string names no company file.");
  if (!std::filesystem::exists(status))
    throw DatabaseError(fmt::format("The company file {} does not exist.", file));
  if (std::filesystem::is_directory(status))
    throw DatabaseError(fmt::format("{} is a folder, not a company file.", file));
}

// The first read: it finds out whether the file is a database and whether it can be had.
void CheckContents(SqliteDatabase& database, const std::string& file, FileKind kind) {
  std::int64_t version = 0;
  std::int64_t objects = 0;
  try {
    version = database.Number("PRAGMA user_version");
    objects = database.Number("SELECT COUNT(*) FROM sqlite_master");
  } catch (const DatabaseError& error) {
    switch (sqlite3_errcode(database.handle())) {
      case SQLITE_NOTADB:
        throw DatabaseError(fmt::format("{} is not a company file.", file));
      case SQLITE_BUSY:
        throw DatabaseError(fmt::format("The company file {} is locked by another program.", file));
      default:
        throw DatabaseError(
            fmt::format("The company file {} cannot be read: {}.", file, error.description()));
    }
  }
  if (objects == 0) throw DatabaseError(fmt::format("{} is not a company file.", file));
  if (kind == FileKind::Company && version != kSchemaVersion)
    throw DatabaseError(
        fmt::format("The company file {} has schema version {}; this program works with version {}.", file,
                    version, kSchemaVersion));
}

// Ready to be worked with.
void Prepare(SqliteDatabase& database, const std::string& file, FileKind kind) {
  CheckContents(database, file, kind);
  database.RunScript("PRAGMA temp_store = MEMORY; PRAGMA cache_size = -32000;");
  // A log is flushed when a person is about to be told that something is done. Where readers and a writer
  // cannot share one, the file keeps its own journal, and each commit waits for the disk.
  const bool logged = database.Text("PRAGMA journal_mode = WAL") == "wal";
  database.LimitLog();
  database.RunScript(logged ? "PRAGMA synchronous = NORMAL" : "PRAGMA synchronous = EXTRA");
}

bool HasMoved(SqliteDatabase& database) {
  int moved = 0;
  sqlite3_file_control(database.handle(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
  return moved != 0;
}

constexpr int kCopyPatience = 10;  // seconds

void CopyAll(SqliteDatabase& source, const std::string& to, LogMode mode) {
  SqliteDatabase copy(to, SqliteDatabase::Mode::New);
  RegisterTextRules(copy);
  copy.RunScript("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;");
  sqlite3_backup* const copying = sqlite3_backup_init(copy.handle(), "main", source.handle(), "main");
  if (copying == nullptr) return CheckSqlite(sqlite3_errcode(copy.handle()), copy.handle());
  sqlite3_backup_step(copying, -1);
  CheckSqlite(sqlite3_backup_finish(copying), copy.handle());
  if (const std::string found = copy.Text("PRAGMA integrity_check"); found != "ok")
    throw DatabaseError(fmt::format("it is damaged: {}", found));
  copy.Text(mode == LogMode::Apart ? "PRAGMA journal_mode = WAL" : "PRAGMA journal_mode = DELETE");
}

}  // namespace

SqliteDatabase OpenSqliteFile(const std::string& file, FileKind kind, int timeoutSeconds,
                              const WaitHandler& onWait) {
  for (;;) {
    RequireFile(file);
    SqliteDatabase database(file, SqliteDatabase::Mode::Existing);
    database.SetBusyTimeout(timeoutSeconds);
    if (onWait) database.SetOnWait([&onWait](std::chrono::milliseconds waited) { return onWait({waited}); });
    if (database.IsReadOnly())
      throw DatabaseError(fmt::format("The company file {} cannot be written.", file));
    try {
      Prepare(database, file, kind);
    } catch (const DatabaseError&) {
      if (!HasMoved(database)) throw;
    }
    database.SetOnWait({});
    if (!HasMoved(database)) return database;
  }
}

SqliteDatabase TakeSqliteFile(const std::string& file) {
  RequireFile(file);
  SqliteDatabase database(file, SqliteDatabase::Mode::Existing);
  if (database.IsReadOnly()) throw DatabaseError(fmt::format("{} cannot be written.", file));
  try {
    // The first lock is kept to the end, so that nobody comes in between; who has the log open has one too.
    database.RunScript("PRAGMA locking_mode = EXCLUSIVE; PRAGMA journal_mode = DELETE; BEGIN EXCLUSIVE;");
  } catch (const DatabaseError& error) {
    switch (sqlite3_errcode(database.handle())) {
      case SQLITE_NOTADB:
      case SQLITE_CORRUPT:
        break;
      case SQLITE_BUSY:
        throw DatabaseError(fmt::format("{} is open in another program.", file));
      default:
        throw DatabaseError(fmt::format("{}: {}", file, error.description()));
    }
  }
  return database;
}

void CopySqliteFile(const std::string& from, const std::string& to, LogMode mode) {
  RequireFile(from);
  SqliteDatabase source(from, SqliteDatabase::Mode::Existing);
  source.SetBusyTimeout(kCopyPatience);
  CheckContents(source, from, FileKind::Company);
  try {
    CopyAll(source, to, mode);
  } catch (const DatabaseError& error) {
    throw DatabaseError(fmt::format("{} cannot be copied: {}", from, error.description()));
  }
}

void CreateSqliteFile(const std::string& file, std::initializer_list<const char*> scripts) {
  if (std::filesystem::exists(file)) throw DatabaseError(fmt::format("The file {} is there already.", file));
  SqliteDatabase database(file, SqliteDatabase::Mode::New);
  RegisterTextRules(database);
  for (const char* script : scripts) database.RunScript(script);
}

}  // namespace ktl
