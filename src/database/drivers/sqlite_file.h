#pragma once

#include <initializer_list>
#include <string>

#include "database/driver.h"
#include "database/drivers/sqlite_database.h"

namespace ktl {

// The schema that this program works with, as a company file names it.
inline constexpr int kSchemaVersion = 1;

enum class FileKind { Company, LocalStore };

// Opens a file that is there; never makes one. Throws DatabaseError, one clear line each: no such file, a
// folder, no database, not a company or one of another schema version, not writable, locked for longer than
// the time-out.
SqliteDatabase OpenSqliteFile(const std::string& file, FileKind kind, int timeoutSeconds,
                              const WaitHandler& onWait = {});

// Makes a new file and runs the scripts, written in the embedded dialect, with the comparer of texts that
// every connection has. An existing file is refused.
void CreateSqliteFile(const std::string& file, std::initializer_list<const char*> scripts);

}  // namespace ktl
