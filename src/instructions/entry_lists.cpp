#include "instructions/entry_lists.h"

#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"

namespace ktl {

namespace {

std::vector<ListRow> ReadList(Session& session, const Statement& sql, const char* text, const char* value) {
  std::vector<ListRow> rows;
  for (Recordset rs(session.Cn, sql); !rs.Eof(); rs.MoveNext())
    rows.push_back({rs[text].TextOrEmpty(), rs[value].TextOrEmpty()});
  return rows;
}

}  // namespace

std::vector<ListRow> ReadEmployees(Session& session, const char* shownColumn, const char* order) {
  const Statement visible = ClassSecurityCondition(session);
  return ReadList(session,
                  session.Sql("Select EMPID, EMPNAME, REFNO From MAS_EMPLOYEE {} Order By {}", visible,
                              Statement(order == nullptr ? shownColumn : order)),
                  shownColumn, "EMPID");
}

std::vector<ListRow> ReadEmployeesWithRunningEmi(Session& session, InstructionType type,
                                                 const char* shownColumn) {
  // Two tables have the column, and only the outer one is meant.
  const Statement visible = ClassSecurityCondition(session, " AND ins.EMPID ");
  return ReadList(
      session,
      session.Sql(
          " SELECT DISTINCT ins.EMPID,EMPNAME ,REFNO FROM mas_employee mas,INS_EMIDETAIL ins  WHERE "
          "mas.empid=ins.empid AND MONTHYEAR= (SELECT MAX(MONTHYEAR) FROM MAS_MONTHYEAR) AND  SITYPE = {}{} "
          "Order By {}",
          type, visible, Statement(shownColumn)),
      shownColumn, "EMPID");
}

std::vector<ListRow> ReadNames(Session& session, InstructionType type) {
  return ReadList(session,
                  session.Sql("Select SINAME From INS_MASTER Where SITYPE = {} Order By SINAME", type),
                  "SINAME", "SINAME");
}

std::vector<ListRow> ReadInstitutions(Session& session, InstructionType type) {
  return ReadList(
      session,
      session.Sql("SELECT INSTID, INSTNAME FROM MAS_INSTITUTION WHERE TYPEID = {} ORDER BY INSTNAME", type),
      "INSTNAME", "INSTID");
}

std::vector<ListRow> ReadFormulas(Session& session) {
  return ReadList(session, session.Sql("Select FORMULAID, FORMULANAME From MAS_FORMULA"), "FORMULANAME",
                  "FORMULAID");
}

}  // namespace ktl
