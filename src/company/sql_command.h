#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace ktl {

class Connection;

// Opens a company as the programs do, from its file or its connection string. A CompanyError when it is none.
void OpenCompany(Connection& connection, const std::string& company);

// Runs one Transact-SQL text: the rows tab-separated under a line of column names, or the number of rows
// changed. A DatabaseError when it fails.
void RunStatement(Connection& connection, std::string_view text, std::ostream& out);

}  // namespace ktl
