#pragma once

#include <initializer_list>
#include <string>

#include "database/driver.h"
#include "database/drivers/sqlite_database.h"
#include "database/schema_version.h"

namespace ktl {

enum class FileKind { Company, LocalStore };

// Opens a file that is there; never makes one. Throws DatabaseError, one clear line each: no such file, a
// folder, no database, not a company or one of another schema version, not writable, locked for longer than
// the time-out. What takes the file's place while this waits is what is opened.
SqliteDatabase OpenSqliteFile(const std::string& file, FileKind kind, int timeoutSeconds,
                              const WaitHandler& onWait = {});

// The file that is about to be replaced or removed: what stands in its log is in the file itself afterwards,
// and nobody else can have it open as long as this one is. Throws DatabaseError when another program has it
// open, be it without writing. What is no database, or a damaged one, is nobody's.
SqliteDatabase TakeSqliteFile(const std::string& file);

enum class LogMode {
  Apart,  // as programs work with a company
  None,   // one file by itself, which can be copied and read anywhere
};

// Copies a company as it stands, with what is still in its log, while others may go on writing it. The copy
// is checked from end to end; it is not flushed to the disk yet. Throws DatabaseError.
void CopySqliteFile(const std::string& from, const std::string& to, LogMode mode);

// Makes a new file and runs the scripts, written in the embedded dialect, with the comparer of texts that
// every connection has. An existing file is refused.
void CreateSqliteFile(const std::string& file, std::initializer_list<const char*> scripts);

}  // namespace ktl
