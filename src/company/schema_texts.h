#pragma once

namespace ktl {

extern const char* const kSchemaText;  // every table of a company
extern const char* const kSeedText;    // the rows that must exist
extern const char* const kLocalText;   // the local store

}  // namespace ktl
