#pragma once

#include <string>
#include <unordered_map>

#include "database/driver.h"
#include "database/drivers/sqlite_database.h"
#include "runtime/value.h"

namespace ktl {

// What the functions of a connection work with; it lives as long as the database they are registered with.
struct FunctionHost {
  SqliteDatabase& database;
  const ClientIdentity& client;
  std::unordered_map<std::string, Value> variables;  // of the batch being run
};

// The comparer of texts, LIKE, and every function that the statements call. An index over texts must be built
// by a connection that has them.
void RegisterTextRules(SqliteDatabase& database);
void RegisterFunctions(FunctionHost& host);

// The client's time; the machine's when the client has no clock.
Date Now(const ClientIdentity& client);

}  // namespace ktl
