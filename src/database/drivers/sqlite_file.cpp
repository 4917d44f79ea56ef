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

}  // namespace

SqliteDatabase OpenSqliteFile(const std::string& file, FileKind kind, int timeoutSeconds,
                              const WaitHandler& onWait) {
  RequireFile(file);
  SqliteDatabase database(file, SqliteDatabase::Mode::Existing);
  database.SetBusyTimeout(timeoutSeconds);
  if (onWait) database.SetOnWait([&onWait](std::chrono::milliseconds waited) { return onWait({waited}); });
  if (database.IsReadOnly()) throw DatabaseError(fmt::format("The company file {} cannot be written.", file));
  CheckContents(database, file, kind);
  database.RunScript("PRAGMA temp_store = MEMORY; PRAGMA cache_size = -32000;");
  // A log is flushed when a person is about to be told that something is done. Where readers and a writer
  // cannot share one, the file keeps its own journal, and each commit waits for the disk.
  const bool logged = database.Text("PRAGMA journal_mode = WAL") == "wal";
  database.RunScript(logged ? "PRAGMA synchronous = NORMAL" : "PRAGMA synchronous = EXTRA");
  database.SetOnWait({});
  return database;
}

void CreateSqliteFile(const std::string& file, std::initializer_list<const char*> scripts) {
  if (std::filesystem::exists(file)) throw DatabaseError(fmt::format("The file {} is there already.", file));
  SqliteDatabase database(file, SqliteDatabase::Mode::New);
  RegisterTextRules(database);
  for (const char* script : scripts) database.RunScript(script);
}

}  // namespace ktl
