#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "company/table_catalogue.h"

namespace ktl {

enum class ServerKind { MariaDb, SqlServer };

// A name as the server wants it: whatever words it has reserved.
std::string ServerName(ServerKind server, std::string_view name);

// CREATE TABLE and CREATE INDEX of one table under its name or another one; each text is one statement. On
// MariaDB names of tables are in upper case: there they are told apart by letter case.
std::vector<std::string> TableStatements(ServerKind server, const TableDescription& table,
                                         std::string_view name = "");

// The views, functions, procedures and triggers of a company, a statement each, in an order in which they
// can be run; those that are there already are replaced. They need the tables.
std::vector<std::string> ObjectStatements(ServerKind server);

// The column that the server itself numbers, "" for none: the audit procedure gives no number.
std::string_view NumberedColumn(const TableDescription& table);

// Tables and objects as a script for the server's own client: mariadb or sqlcmd.
std::string ServerScript(ServerKind server);

}  // namespace ktl
