#include "frame/workstation_objects.h"

#include <fmt/format.h>

#include "common/sql_text.h"
#include "frame/session.h"

namespace ktl {

namespace {

std::string Quoted(const std::string& name) { return "'" + DoubleQuotes(name) + "'"; }

// New employees are added, and every flag is set back to 1.
std::string FilterTableBatch(const std::string& name) {
  return fmt::format(
      "IF EXISTS (SELECT * FROM SYS.TABLES WHERE NAME = {1}) BEGIN"
      " INSERT INTO [{0}] SELECT EMPID, 1 AS FILTERYN1, 1 AS REPTYN1 FROM MAS_EMPLOYEE"
      " WHERE EMPID NOT IN (SELECT EMPID FROM [{0}])"
      " UPDATE [{0}] SET FILTERYN1 = 1, REPTYN1 = 1 END"
      " ELSE BEGIN SELECT EMPID, 1 AS FILTERYN1, 1 AS REPTYN1 INTO [{0}] FROM MAS_EMPLOYEE"
      " ALTER TABLE [{0}] ADD CONSTRAINT [PK_{0}] PRIMARY KEY (EMPID) END",
      name, Quoted(name));
}

}  // namespace

void PrepareWorkstationObjects(Session& session) {
  session.hostName = session.data.Guarding("SELECT HOST_NAME()", "").TextOrEmpty();
  const std::string suffix = session.hostName + session.FilterSuffix();
  const std::string view = "vw_MAS_EMPLOYEE" + suffix;
  const std::string table = "TMPFILTER" + suffix;
  session.EmployeeViewName = "[" + view + "]";
  session.FilterTableName = "[" + table + "]";

  // One step: all programs of a workstation share these objects, and two of them may start at once.
  Transaction transaction(session.Cn);
  session.Cn.Execute(FilterTableBatch(table));
  session.Cn.Execute(fmt::format("IF EXISTS (SELECT * FROM SYS.VIEWS WHERE NAME = {}) DROP VIEW {}",
                                 Quoted(view), session.EmployeeViewName));
  session.Cn.Execute(fmt::format(
      "CREATE VIEW {} AS SELECT E.*, ISNULL(T.FILTERYN1, 1) AS FILTERYN1, ISNULL(T.REPTYN1, 1) AS REPTYN1"
      " FROM MAS_EMPLOYEE E LEFT JOIN {} T ON E.EMPID =T.EMPID",
      session.EmployeeViewName, session.FilterTableName));
  transaction.Commit();
}

}  // namespace ktl
