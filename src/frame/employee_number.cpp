#include "frame/employee_number.h"

#include "database/recordset.h"
#include "frame/session.h"

namespace ktl {

EmployeeNumbering NumberingOf(const Session& session) {
  const OptionSet& options = session.options;
  return options.EMPREFNOYN ? EmployeeNumbering{"REFNO", options.REFNOCAP}
                            : EmployeeNumbering{"EMPID", options.EMPIDCAP};
}

EmployeeHeader ReadEmployeeHeader(Session& session, long employee) {
  const Recordset row(
      session.Cn, session.Sql("SELECT EMPID, REFNO, EMPNAME FROM MAS_EMPLOYEE Where EMPID = {}", employee));
  if (row.Eof()) return {};
  return {row[NumberingOf(session).column].TextOrEmpty(), row["EMPNAME"].TextOrEmpty()};
}

}  // namespace ktl
