#include <fmt/format.h>

#include "database/drivers/sqlite_driver.h"

// The procedures of the host's database that the texts call by their names.

namespace ktl {

namespace {

void RequireArguments(const tsql::Step& call, std::size_t count) {
  if (call.arguments.size() == count) return;
  throw DatabaseError(fmt::format("The procedure {} takes {} arguments, {} are given.", call.name, count,
                                  call.arguments.size()),
                      kStatementError);
}

Value Argument(const tsql::Step& call, std::size_t index) {
  const auto& argument = call.arguments[index];
  return argument ? Value(*argument) : Value(Null{});
}

}  // namespace

void SqliteDriver::Call(const tsql::Step& step) {
  if (tsql::SameWord(step.name, "ClassSecurity")) {
    RequireArguments(step, 3);
    FillClassTable("TMP" + client_.hostName, client_.userName);
  } else if (tsql::SameWord(step.name, "ClassSecurityCloud")) {
    RequireArguments(step, 4);
    const std::string user = Argument(step, 3).TextOrEmpty();
    FillClassTable("TMP" + client_.hostName + user, user);
  } else if (tsql::SameWord(step.name, "UpdateAuditTrail")) {
    RequireArguments(step, 7);
    WriteAuditTrail(step);
  } else {
    throw DatabaseError(fmt::format("Could not find stored procedure '{}'.", step.name), kStatementError);
  }
}

// The employees that the user may see; all of them while nobody's are told.
void SqliteDriver::FillClassTable(const std::string& table, const std::string& user) {
  if (table.find_first_of("[]") != table.npos)
    throw DatabaseError(fmt::format("No table can be named {}.", table));
  database_.Run(fmt::format("CREATE TABLE IF NOT EXISTS [{}] (EMPID INTEGER PRIMARY KEY)", table));
  database_.Run("SAVEPOINT KTL_CLASS");
  try {
    database_.Run(fmt::format("DELETE FROM [{}]", table));
    database_.Run(
        fmt::format("INSERT INTO [{}] SELECT EMPID FROM MAS_EMPLOYEE WHERE NOT EXISTS (SELECT 1 FROM "
                    "SEC_CLASSEMP) OR EMPID IN (SELECT EMPID FROM SEC_CLASSEMP WHERE USERNAME = ?1)",
                    table),
        {user});
    database_.Run("RELEASE KTL_CLASS");
  } catch (const DatabaseError&) {
    database_.RunScript("ROLLBACK TO KTL_CLASS; RELEASE KTL_CLASS;");
    throw;
  }
}

void SqliteDriver::WriteAuditTrail(const tsql::Step& call) {
  database_.Run(
      "INSERT INTO SEC_AUDITTRAIL (LOGDATE, USERNAME, MENUNO, EMPID, ACTIONTEXT, DETAILTEXT, EXTRATEXT, "
      "WINUSER) "
      "VALUES (substr(KL_NOW() || ' 00:00:00', 1, 19), ?1, ?2, ?3, ?4, ?5, ?6, ?7)",
      {Argument(call, 0), Argument(call, 1), Argument(call, 2), Argument(call, 3), Argument(call, 4),
       Argument(call, 5), Argument(call, 6)});
}

}  // namespace ktl
