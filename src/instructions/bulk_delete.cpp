#include "instructions/bulk_delete.h"

#include <fmt/format.h>

#include "common/month_year.h"
#include "common/sql_text.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "frame/writing_turn.h"
#include "instructions/advloan_write.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

Statement WhoCondition(Session& session, const BulkFilter& filter) {
  Statement who;
  if (filter.employee != 0) who += session.Sql(" AND EMP.EMPID={}", filter.employee);
  if (!filter.search.empty()) {
    who += session.Sql(" AND (EMP.EMPID LIKE '%{0}%' OR EMP.REFNO LIKE '%{0}%' OR EMPNAME LIKE '%{0}%')",
                       Statement(LikePattern(filter.search)));
  }
  return who;
}

std::vector<BulkRow> ReadRows(Session& session, const StatementTwin& list, InstructionType type) {
  std::vector<BulkRow> rows;
  for (Recordset rs(session.Cn, list); !rs.Eof(); rs.MoveNext()) {
    rows.push_back({.key = {rs["EMPID"].ToLong(), type, rs["SERIALNO"].ToLong()},
                    .reference = rs["REFNO"].TextOrEmpty(),
                    .employeeName = rs["EMPNAME"].TextOrEmpty(),
                    .name = rs["SINAME"].TextOrEmpty(),
                    .date = DateIfAny(rs["SIDATE"]),
                    .amount = rs["ACTAMT"].NumberOr0(),
                    .interest = rs["INTAMT"].NumberOr0(),
                    .completed = WholeIfAny(rs["NOOFEMI"]),
                    .lastMonth = static_cast<long>(rs["LASTMONTH"].NumberOr0()),
                    .lastMonthName = rs["LASTMONTHNAME"].TextOrEmpty(),
                    .employeeLocked = rs["LOCKYN"].NumberOr0() == 1,
                    .recovered = rs["TOTRECAMT"].NumberOr0()});
  }
  return rows;
}

std::string AuditText(const BulkRow& row) {
  return fmt::format("::SI Type = {}:SI Name = {}:Date = {}:Amount = {}", FactsOf(row.key.type).word,
                     row.name, ShownDate(row.date), NumberText(row.amount));
}

}  // namespace

std::vector<ListRow> ReadCompanyMonths(Session& session) {
  std::vector<ListRow> months;
  Recordset rs(session.Cn, "SELECT MONTHYEAR,MONTHNAME FROM QRYMONTH ORDER BY MONTHYEAR DESC");
  for (; !rs.Eof(); rs.MoveNext())
    months.push_back({rs["MONTHNAME"].TextOrEmpty(), rs["MONTHYEAR"].TextOrEmpty()});
  return months;
}

std::vector<ListRow> ReadInstructedEmployees(Session& session, InstructionType type,
                                             const char* shownColumn) {
  const Statement visible = ClassSecurityCondition(session, " AND EMP.EMPID ");
  std::vector<ListRow> people;
  Recordset rs(session.Cn,
               session.Sql(" SELECT DISTINCT EMP.EMPID,EMPNAME ,REFNO FROM MAS_EMPLOYEE EMP,INS_ADVLOAN IA  "
                           "WHERE EMP.EMPID=IA.EMPID  AND SITYPE = {}{} ORDER BY {}",
                           type, visible, Statement(shownColumn)));
  for (; !rs.Eof(); rs.MoveNext())
    people.push_back({rs[shownColumn].TextOrEmpty(), rs["EMPID"].TextOrEmpty()});
  return people;
}

std::optional<BulkRefusal> CheckBulkFilter(const BulkFilter& filter) {
  if (filter.fromMonth == 0 || filter.toMonth == 0 || filter.fromMonth <= filter.toMonth) return std::nullopt;
  return BulkRefusal{"'From Month' should be earlier than 'To Month'", BulkField::FromMonth};
}

std::vector<BulkRow> ReadBulkRows(Session& session, const BulkFilter& filter) {
  const Statement who = WhoCondition(session, filter) + ClassSecurityCondition(session, " AND EMP.EMPID ");
  return ReadRows(session, WriteBulkList(session, filter, who), filter.type);
}

std::optional<BulkRefusal> CheckBulkDelete(Session& session, long fromMonth) {
  const Statement first =
      fromMonth == 0 ? Statement("(SELECT MIN(MONTHYEAR) FROM MAS_MONTHYEAR)") : session.Sql("{}", fromMonth);
  if (!session.data.FnBlnRecExists(session.Sql(
          "SELECT MONTHYEAR FROM MAS_MONTHYEAR WHERE ISNULL(LOCKEDYN,0)=1 AND MONTHYEAR>={}", first)))
    return std::nullopt;
  return BulkRefusal{"One or more Month/Year is locked, so cannot Delete.", BulkField::FromMonth};
}

void DeleteBulkRow(Session& session, const BulkFilter& filter, const BulkRow& row) {
  Transaction whole(session.Cn);
  const Statement one = session.Sql(" AND EMP.EMPID={} AND IA.SERIALNO={}", row.key.employee, row.key.serial);
  if (ReadRows(session, WriteBulkList(session, filter, one), filter.type) != std::vector{row})
    throw ChangedMeanwhile();
  TakeAway(session, row.key, true);
  AuditInstruction(session, row.key.employee, fmt::format("{} Deleted", FactsOf(row.key.type).word),
                   AuditText(row), "Standing Instructions(Bulk Delete)");
  whole.Commit();
}

}  // namespace ktl
