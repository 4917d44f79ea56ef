#pragma once

namespace ktl {

extern const char* const kSchemaText;  // every table of a company
extern const char* const kSeedText;    // the rows that must exist
extern const char* const kLocalText;   // the local store
// Views, functions, procedures and triggers of a server, parted by lines with GO alone.
extern const char* const kMariadbObjectsText;
extern const char* const kSqlserverObjectsText;

}  // namespace ktl
