#pragma once

#include <memory>
#include <string_view>

#include "database/drivers/odbc_database.h"

namespace ktl {

// What the server of a connection string is like; null for a company in a file. Throws DatabaseError for a
// provider that is none.
std::unique_ptr<const ServerDialect> ServerDialectOf(std::string_view connectionString);

// Connects, and makes sure that a company of this program's version is there. Throws DatabaseError, in words
// for a person.
void OpenServerCompany(OdbcDatabase& database, const ConnectionSettings& settings);
// The first half of it, for a database that is to become a company.
void OpenServer(OdbcDatabase& database, const ConnectionSettings& settings);

// A server's sentence inside one of ours.
std::string WithoutStop(std::string sentence);

// Why a connection was not made.
DatabaseError NotReached(const ServerDialect& dialect, const ConnectionSettings& settings,
                         const ServerError& error);

}  // namespace ktl
