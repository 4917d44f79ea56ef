#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace ktl {

// What SQL Server would refuse in the statements of the files, or of the standard input when there is none:
// statement logs, of which those that failed are passed over, or texts, one a line. Statements that differ in
// their numbers and texts only are told once. False when there is something to tell. Throws CompanyError for
// a file that cannot be read.
bool CheckStatements(const std::vector<std::string>& files, std::ostream& out);

}  // namespace ktl
