#pragma once

namespace ktl {

class SqliteDatabase;

// Sums that SQL can only say with a statement for each of them: several at a time, kept together in one
// value.
void RegisterSums(SqliteDatabase& database);

}  // namespace ktl
