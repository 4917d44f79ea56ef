#include "instructions/bulk_list.h"

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/session.h"

namespace ktl {

namespace {

// A company of an earlier release has the index of the months without its last two columns.
constexpr const char* kByHand = R"sql(
DROP INDEX IX_EMI_KEYMONTH;
CREATE INDEX IX_EMI_KEYMONTH
ON INS_EMIDETAIL (EMPID, SITYPE, SERIALNO, MONTHYEAR, MDFPRNAMT, COUNTER, MDFYAMT);
CREATE INDEX IX_EMI_BYHAND ON INS_EMIDETAIL (EMPID, SITYPE, SERIALNO, EMIRECVYN, MDFYAMT) WHERE EMIRECVYN = 1;
CREATE VIEW KTL_EMIBYHAND AS
SELECT EMPID, SITYPE, SERIALNO, MDFYAMT FROM INS_EMIDETAIL INDEXED BY IX_EMI_BYHAND WHERE EMIRECVYN = 1;
)sql";

struct Months {
  long from = 0;
  long to = 0;
};

Months CompanyMonths(Session& session) {
  return {session.data.Long("SELECT MIN(MONTHYEAR) FROM MAS_MONTHYEAR"),
          session.data.Long("SELECT MAX(MONTHYEAR) FROM MAS_MONTHYEAR")};
}

Months MonthsOf(Session& session, const BulkFilter& filter) {
  if (filter.fromMonth != 0 && filter.toMonth != 0) return {filter.fromMonth, filter.toMonth};
  const Months all = CompanyMonths(session);
  return {filter.fromMonth == 0 ? all.from : filter.fromMonth, filter.toMonth == 0 ? all.to : filter.toMonth};
}

// As YYYY/MM/DD; of a month without dates its calendar.
Statement DayOf(Session& session, const char* column, long monthYear, const Date& calendar) {
  const Value stored = session.data.FnVarGetDbValue(
      session.Sql("SELECT {} FROM MAS_MONTHYEAR WHERE MONTHYEAR={}", Statement(column), monthYear));
  return Statement(FormatDate(DateIfAny(stored).value_or(calendar), "yyyy/mm/dd"));
}

Statement DateCondition(Session& session, const BulkFilter& filter, const Months& months) {
  if (filter.fromMonth == 0 && filter.toMonth == 0)
    return Statement(" AND IA.SIDATE BETWEEN '1900-01-01' AND '2099-12-31'");
  return session.Sql(
      " AND IA.SIDATE BETWEEN '{}' AND '{}'",
      DayOf(session, "CALCSTARTDATE", months.from, FirstDayOf(months.from)),
      DayOf(session, "CALCENDDATE", months.to, FirstDayOf(months.to).AddMonths(1).AddDays(-1)));
}

// What goes into the list's text, in either wording.
struct BulkList {
  Months months;  // in which an instalment counts as completed
  InstructionType type = InstructionType::None;
  Statement condition;
  Statement first;  // the column that it is sorted by
};

Statement Said(Session& session, const BulkList& list) {
  return session.Sql(
      "SELECT *,ISNULL((SELECT MONTHNAME FROM QRYMONTH WHERE MONTHYEAR=LASTMONTH),'') AS LASTMONTHNAME FROM "
      "(SELECT DISTINCT EMP.EMPID,REFNO,EMPNAME,SINAME,SIDATE,ISNULL(IA.ACTAMT,0) ACTAMT,ISNULL(IA.INTAMT,0) "
      "AS INTAMT,(SELECT MAX([COUNTER]) FROM INS_EMIDETAIL WHERE EMPID=EMP.EMPID AND SERIALNO=IA.SERIALNO AND "
      "SITYPE=IA.SITYPE  AND MONTHYEAR BETWEEN {} AND {}) NOOFEMI, (SELECT MAX(MONTHYEAR) FROM INS_EMIDETAIL "
      "WHERE EMPID=EMP.EMPID AND SERIALNO=IA.SERIALNO AND SITYPE=IA.SITYPE ) LASTMONTH, "
      "IA.SERIALNO,IA.SITYPE,ISNULL(LOCKYN,0) AS LOCKYN, ISNULL((SELECT SUM(ISNULL(RCPTAMT,0)) FROM "
      "INS_RECEIPTS WHERE EMPID=IA.EMPID AND SITYPE=IA.SITYPE AND SERIALNO=IA.SERIALNO),0)+ ISNULL((Select "
      "Sum(ISNULL(MDFYAMT,0))  AS Total From INS_EMIDETAIL D,SLC_SALARYCALC_E E Where D.EMPID=E.EMPID AND "
      "D.MONTHYEAR = E.MONTHYEAR AND INDICATOR=0 AND ETOTAL-NETAMOUNT<>0 AND E.EMPID = IA.EMPID And SITYPE = "
      "IA.SITYPE AND SERIALNO=IA.SERIALNO),0)  + ISNULL((SELECT SUM(ISNULL(MDFYAMT,0)) FROM INS_EMIDETAIL "
      "WHERE EMPID = IA.EMPID AND SITYPE=IA.SITYPE AND SERIALNO=IA.SERIALNO AND EMIRECVYN=1 ),0) AS TOTRECAMT "
      "FROM MAS_EMPLOYEE EMP,INS_ADVLOAN IA Where EMP.EMPID = IA.EMPID AND IA.SITYPE={} {} GROUP BY "
      "EMP.EMPID,IA.EMPID,REFNO,EMPNAME,ISNULL(IA.ACTAMT,0),ISNULL(IA.INTAMT,0),SINAME,SIDATE,IA.SERIALNO,IA."
      "SITYPE,ISNULL(LOCKYN,0)) AS TMP ORDER BY {},EMPNAME,SIDATE",
      list.months.from, list.months.to, list.type, list.condition, list.first);
}

// No two rows are alike, since both tables are joined by their keys. A salary counts in its own month, so
// only the months of salaries are looked at. The last columns of the order are those by which the other
// wording groups.
Statement Embedded(Session& session, const BulkList& list) {
  return session.Sql(
      "SELECT *,ISNULL((SELECT MONTHNAME FROM QRYMONTH WHERE MONTHYEAR=LASTMONTH),'') AS LASTMONTHNAME FROM "
      "(SELECT EMP.EMPID,REFNO,EMPNAME,SINAME,SIDATE,ISNULL(IA.ACTAMT,0) ACTAMT,ISNULL(IA.INTAMT,0) AS INTAMT,"
      "(SELECT MAX([COUNTER]) FROM INS_EMIDETAIL WHERE EMPID=IA.EMPID AND SITYPE=IA.SITYPE AND "
      "SERIALNO=IA.SERIALNO AND MONTHYEAR BETWEEN {} AND {}) NOOFEMI, "
      "(SELECT MAX(MONTHYEAR) FROM INS_EMIDETAIL WHERE EMPID=IA.EMPID AND SITYPE=IA.SITYPE AND "
      "SERIALNO=IA.SERIALNO) LASTMONTH, IA.SERIALNO,IA.SITYPE,ISNULL(LOCKYN,0) AS LOCKYN, "
      "ISNULL((SELECT SUM(ISNULL(RCPTAMT,0)) FROM INS_RECEIPTS WHERE EMPID=IA.EMPID AND SITYPE=IA.SITYPE AND "
      "SERIALNO=IA.SERIALNO),0)+ ISNULL((SELECT SUM(ISNULL(D.MDFYAMT,0)) FROM INS_EMIDETAIL D CROSS JOIN "
      "SLC_SALARYCALC_E E WHERE D.EMPID=IA.EMPID AND D.SITYPE=IA.SITYPE AND D.SERIALNO=IA.SERIALNO AND "
      "D.MONTHYEAR BETWEEN (SELECT MIN(MONTHYEAR) FROM SLC_SALARYCALC_E) AND (SELECT MAX(MONTHYEAR) FROM "
      "SLC_SALARYCALC_E) AND E.EMPID=D.EMPID AND E.MONTHYEAR=D.MONTHYEAR AND E.INDICATOR=0 AND "
      "E.ETOTAL-E.NETAMOUNT<>0),0) + ISNULL((SELECT SUM(ISNULL(MDFYAMT,0)) FROM KTL_EMIBYHAND WHERE "
      "EMPID=IA.EMPID AND SITYPE=IA.SITYPE AND SERIALNO=IA.SERIALNO),0) AS TOTRECAMT "
      "FROM MAS_EMPLOYEE EMP,INS_ADVLOAN IA WHERE EMP.EMPID = IA.EMPID AND IA.SITYPE={} {}) AS TMP "
      "ORDER BY {},EMPNAME,SIDATE,EMPID,REFNO,ACTAMT,INTAMT,SINAME,SERIALNO",
      list.months.from, list.months.to, list.type, list.condition, list.first);
}

}  // namespace

BulkListStatement::operator StatementTwin() const {
  return {.said = said, .embedded = embedded, .table = "KTL_EMIBYHAND", .setup = kByHand};
}

BulkListStatement WriteBulkList(Session& session, const BulkFilter& filter, const Statement& who) {
  const Months months = MonthsOf(session, filter);
  const BulkList list{.months = months,
                      .type = filter.type,
                      .condition = DateCondition(session, filter, months) + who,
                      .first = Statement(session.options.EMPREFNOYN ? "REFNO" : "EMPID")};
  return {.said = Said(session, list), .embedded = Embedded(session, list)};
}

}  // namespace ktl
