#include "instructions/advloan_data.h"

#include <fmt/format.h>

#include <map>
#include <set>

#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "runtime/text.h"

namespace ktl {

namespace {

std::vector<ListRow> ReadList(Session& session, const std::string& sql, std::string_view text,
                              std::string_view value) {
  std::vector<ListRow> rows;
  for (Recordset rs(session.Cn, sql); !rs.Eof(); rs.MoveNext()) {
    rows.push_back({rs[text].TextOrEmpty(), rs[value].TextOrEmpty()});
  }
  return rows;
}

double ReadNumber(Session& session, const std::string& sql) {
  return session.data.FnVarGetDbValue(sql, 0).NumberOr0();
}

// In the list of running employees two tables have the column, and only the outer one is meant.
std::string ForRunningEmployees(std::string condition) {
  condition = ReplaceAll(std::move(condition), " WHERE EMPID ", " AND ins.EMPID ");
  return condition;
}

std::string LenderOf(Session& session, const InstructionKey& key) {
  const Recordset lenders(session.Cn, "SELECT COUNT(INSTID) FROM INS_EMIDETAIL WHERE " +
                                          WhereInstruction(key) + " GROUP BY INSTID");
  if (lenders.RecordCount() != 1) return "";
  return session.data
      .FnVarGetDbValue(
          "SELECT INSTNAME FROM MAS_INSTITUTION MI WHERE INSTID IN (SELECT TOP 1 INSTID FROM "
          "INS_EMIDETAIL WHERE INSTID = MI.INSTID AND " +
              WhereInstruction(key) + ")",
          "")
      .ToText();
}

// By hand before the month from which salaries are calculated.
double RecoveredByHand(Session& session, const InstructionKey& key, long salaryFrom) {
  return ReadNumber(session,
                    fmt::format("Select Sum(E.MDFYAMT) From INS_EMIDETAIL E Where E.EMPID = {} And "
                                "E.SERIALNO = {} And E.SITYPE = {} And E.EMIRECVYN = 1 And E.MONTHYEAR < {}",
                                key.employee, key.serial, key.siType, salaryFrom));
}

std::string CalculatedSalaryOf(const InstructionKey& key) {
  return fmt::format(
      "From INS_EMIDETAIL E, SLC_SALARYCALC_E SE, SLC_SALARYCALC_D SD Where E.EMPID = SE.EMPID And "
      "E.MONTHYEAR = "
      "SE.MONTHYEAR And SE.SALID = SD.SALID And SE.INDICATOR <> 1  And E.EMPID = {} And E.SERIALNO = {} And "
      "E.SITYPE "
      "= {}",
      key.employee, key.serial, key.siType);
}

double RecoveredBySalary(Session& session, const InstructionKey& key) {
  return ReadNumber(session, fmt::format("Select Sum(E.MDFYAMT) {} And SD.{} > -1", CalculatedSalaryOf(key),
                                         SalaryHeadOf(key.siType)));
}

bool SalaryHasTaken(Session& session, const InstructionKey& key, long monthYear) {
  Recordset rs(session.Cn, fmt::format("Select DISTINCT E.EMIRECVYN, SD.{} {} And E.MONTHYEAR = {}",
                                       SalaryHeadOf(key.siType), CalculatedSalaryOf(key), monthYear));
  for (; !rs.Eof(); rs.MoveNext()) {
    if (!rs[1].IsNull() && rs[1].ToDouble() > -1) return true;
  }
  return false;
}

// The months that SalaryHasTaken needs asking about: few of a long schedule.
std::set<long> ReadCalculatedMonths(Session& session, const InstructionKey& key) {
  std::set<long> months;
  for (Recordset rs(session.Cn, "Select DISTINCT E.MONTHYEAR " + CalculatedSalaryOf(key)); !rs.Eof();
       rs.MoveNext()) {
    months.insert(rs[0].ToLong());
  }
  return months;
}

void AddFigures(Session& session, AdvLoanListRow& row, const InstructionKey& key, long salaryFrom) {
  const Recordset sums(session.Cn,
                       "Select Sum(MDFYAMT), Sum(INTAMT) From INS_EMIDETAIL Where " + WhereInstruction(key));
  row.emi = sums[0].NumberOr0();
  if (ReadNameRules(session, row.name).REDUCINGBALYN) row.emiInterest = sums[1].NumberOr0();
  row.receipts = ReadNumber(session, "Select Sum(RCPTAMT) From INS_RECEIPTS Where " + WhereInstruction(key));
  row.recovered = RecoveredByHand(session, key, salaryFrom) + RecoveredBySalary(session, key);
}

std::string ScheduleStatement(const InstructionKey& key) {
  if (key.siType == 1) {
    return "Select COUNTER, MONTHYEAR, EMIAMT, MDFYAMT, INTAMT, ACTPRNAMT, ACTINTAMT, MDFPRNAMT, MDFINTAMT "
           "From "
           "INS_EMIDETAIL Where " +
           WhereInstruction(key) + " Order By MONTHYEAR";
  }
  // A month without a lender of the type does not show.
  return fmt::format(
      "Select E.COUNTER, E.MONTHYEAR, E.EMIAMT, E.MDFYAMT, E.INTAMT, E.ACTPRNAMT, E.ACTINTAMT, E.MDFPRNAMT, "
      "E.MDFINTAMT, I.INSTNAME From INS_EMIDETAIL E, MAS_INSTITUTION I Where E.INSTID = I.INSTID And "
      "I.TYPEID = "
      "E.SITYPE And E.EMPID = {} And E.SERIALNO = {} And E.SITYPE = {} Order By E.MONTHYEAR",
      key.employee, key.serial, key.siType);
}

std::map<long, bool> ReadHandMarks(Session& session, const InstructionKey& key) {
  std::map<long, bool> marks;
  for (Recordset rs(session.Cn,
                    "Select COUNTER, EMIRECVYN From INS_EMIDETAIL Where " + WhereInstruction(key));
       !rs.Eof(); rs.MoveNext()) {
    marks[rs[0].ToLong()] = rs[1].NumberOr0() == 1;
  }
  return marks;
}

}  // namespace

std::string_view SalaryHeadOf(int siType) { return siType == 1 ? "ADVANCE" : "LOAN"; }

std::string_view AuditWordOf(int siType) { return siType == 1 ? "Advance" : "Loan"; }

std::vector<ListRow> ReadEmployees(Session& session, bool withRunningEmi, std::string_view orderBy) {
  const std::string condition = ClassSecurityCondition(session);
  std::string sql = "Select EMPID, EMPNAME, REFNO From MAS_EMPLOYEE " + condition;
  if (withRunningEmi) {
    sql = fmt::format(
        " SELECT DISTINCT ins.EMPID,EMPNAME ,REFNO FROM mas_employee mas,INS_EMIDETAIL ins  WHERE "
        "mas.empid=ins.empid "
        "AND MONTHYEAR= (SELECT MAX(MONTHYEAR) FROM MAS_MONTHYEAR) AND  SITYPE = {}{}",
        session.SIType, ForRunningEmployees(condition));
  }
  return ReadList(session, fmt::format("{} Order By {}", sql, orderBy), orderBy, "EMPID");
}

std::vector<ListRow> ReadNames(Session& session) {
  return ReadList(
      session, fmt::format("Select SINAME From INS_MASTER Where SITYPE = {} Order By SINAME", session.SIType),
      "SINAME", "SINAME");
}

std::vector<ListRow> ReadInstitutions(Session& session) {
  return ReadList(
      session,
      fmt::format("SELECT INSTID, INSTNAME FROM MAS_INSTITUTION WHERE TYPEID = {} ORDER BY INSTNAME",
                  session.SIType),
      "INSTNAME", "INSTID");
}

std::vector<ListRow> ReadFormulas(Session& session) {
  return ReadList(session, "Select FORMULAID, FORMULANAME From MAS_FORMULA", "FORMULANAME", "FORMULAID");
}

bool NameExists(Session& session, std::string_view name) {
  return session.data.FnBlnRecExists(
      fmt::format("Select * From INS_MASTER Where SITYPE = {} And UPPER(SINAME) = '{}'", session.SIType,
                  SqlText(session, name)));
}

NameRules ReadNameRules(Session& session, std::string_view name) {
  const Recordset rs(session.Cn,
                     fmt::format("Select * From INS_MASTER Where SITYPE = {} And UPPER(SINAME) = '{}'",
                                 session.SIType, SqlText(session, name)));
  if (rs.Eof()) return {};
  NameRules rules;
  rules.AMTLIMIT = rs["AMTLIMIT"].NumberOr0();
  rules.ALLOWLIMIT = static_cast<long>(rs["ALLOWLIMIT"].NumberOr0());
  rules.EMIRECCNT = static_cast<long>(rs["EMIRECCNT"].NumberOr0());
  rules.INTRRATE = rs["INTRRATE"].NumberOr0();
  rules.REDUCINGBALYN = rs["REDUCINGBALYN"].NumberOr0() == 1;
  return rules;
}

bool ReadSepPiYN(Session& session, std::string_view name) {
  return ReadNumber(session, fmt::format("Select SEPPIYN From INS_MASTER Where SITYPE = {} And SINAME = '{}'",
                                         session.SIType, SqlText(session, name))) == 1;
}

bool MayHaveHouseLoan(Session& session, long employee, std::string_view name) {
  if (ReadNumber(session, fmt::format("Select TDSYN From MAS_EMPLOYEE Where EMPID = {}", employee)) == 0)
    return false;
  return ReadNumber(session, fmt::format("Select TDSYN From INS_MASTER Where SITYPE = {} And SINAME = '{}'",
                                         session.SIType, SqlText(session, name))) != 0;
}

std::optional<AdvLoanDetail> ReadAdvLoan(Session& session, const InstructionKey& key) {
  const Recordset rs(session.Cn,
                     "Select SINAME, LOANACNO, SIDATE, ACTAMT, INTAMT, REMARKS From INS_ADVLOAN Where " +
                         WhereInstruction(key));
  if (rs.Eof()) return std::nullopt;
  AdvLoanDetail detail;
  detail.name = rs["SINAME"].TextOrEmpty();
  detail.account = rs["LOANACNO"].TextOrEmpty();
  detail.date = rs["SIDATE"];
  detail.amount = rs["ACTAMT"].NumberOr0();
  detail.interest = rs["INTAMT"].NumberOr0();
  detail.remarks = rs["REMARKS"].TextOrEmpty();
  if (key.siType == 2) detail.institution = LenderOf(session, key);
  return detail;
}

std::vector<AdvLoanListRow> ReadAdvLoanList(Session& session, long employee) {
  const long salaryFrom = FnLngMonthYear(
      session.data
          .FnVarGetDbValue(fmt::format("Select SALCALCFROM From MAS_EMPLOYEE Where EMPID = {}", employee), "")
          .ToText());
  std::vector<AdvLoanListRow> list;
  Recordset rs(
      session.Cn,
      fmt::format("SELECT  IA.SERIALNO, IA.SINAME, IA.LOANACNO, IA.SIDATE, IA.ACTAMT AS ACTAMT, IA.INTAMT AS "
                  "INTAMT, 0 AS EMIINTEREST, 0 AS RECEIPTS, 0 AS RECVDEMI, IA.REMARKS FROM INS_ADVLOAN IA "
                  "WHERE IA.EMPID = {} AND IA.SITYPE = {} ORDER BY IA.SERIALNO",
                  employee, session.SIType));
  for (; !rs.Eof(); rs.MoveNext()) {
    AdvLoanListRow row;
    row.serial = rs["SERIALNO"].ToLong();
    row.name = rs["SINAME"].TextOrEmpty();
    row.account = rs["LOANACNO"].TextOrEmpty();
    row.date = rs["SIDATE"];
    row.amount = rs["ACTAMT"].NumberOr0();
    row.interest = rs["INTAMT"].NumberOr0();
    row.remarks = rs["REMARKS"].TextOrEmpty();
    AddFigures(session, row, {employee, session.SIType, row.serial}, salaryFrom);
    list.push_back(std::move(row));
  }
  return list;
}

std::vector<EmiRow> ReadSchedule(Session& session, const InstructionKey& key) {
  const std::map<long, bool> marks = ReadHandMarks(session, key);
  const std::set<long> calculated = ReadCalculatedMonths(session, key);
  std::vector<EmiRow> schedule;
  for (Recordset rs(session.Cn, ScheduleStatement(key)); !rs.Eof(); rs.MoveNext()) {
    EmiRow row;
    row.counter = rs["COUNTER"].ToLong();
    row.monthYear = rs["MONTHYEAR"].ToLong();
    row.emiAmount = rs["EMIAMT"];
    row.modifiedAmount = rs["MDFYAMT"];
    row.interest = rs["INTAMT"];
    row.actualPrincipal = rs["ACTPRNAMT"];
    row.actualInterest = rs["ACTINTAMT"];
    row.modifiedPrincipal = rs["MDFPRNAMT"];
    row.modifiedInterest = rs["MDFINTAMT"];
    if (rs.HasField("INSTNAME")) row.institution = rs["INSTNAME"].TextOrEmpty();
    if (const auto mark = marks.find(row.counter); mark != marks.end()) row.markedRecovered = mark->second;
    row.recoveredBySalary = calculated.contains(row.monthYear) && SalaryHasTaken(session, key, row.monthYear);
    schedule.push_back(std::move(row));
  }
  return schedule;
}

AdvLoanTotals ReadTotals(Session& session, long employee) {
  const std::string ofEmployee = fmt::format("EMPID = {} And SITYPE = {}", employee, session.SIType);
  AdvLoanTotals totals;
  totals.amount = ReadNumber(session, "Select Sum(ACTAMT) From INS_ADVLOAN Where " + ofEmployee);
  totals.interest = ReadNumber(session, "Select Sum(INTAMT) From INS_ADVLOAN Where " + ofEmployee);
  // Each sum counts 0 when there is nothing to add, so that months marked by hand show without a receipt.
  totals.receipts = ReadNumber(
      session,
      fmt::format("Select ISNULL(Sum(RCPTAMT),0) + ISNULL((SELECT SUM(ISNULL(MDFYAMT,0)) FROM INS_EMIDETAIL "
                  "WHERE EMPID = {} AND SITYPE = {} AND EMIRECVYN=1 ),0) From INS_RECEIPTS Where {}",
                  employee, session.SIType, ofEmployee));
  totals.fromSalary = ReadNumber(
      session,
      fmt::format("Select Sum(ISNULL(MDFYAMT,0))  AS Total From INS_EMIDETAIL D,SLC_SALARYCALC_E E Where "
                  "D.EMPID=E.EMPID AND D.MONTHYEAR = E.MONTHYEAR AND INDICATOR=0 AND ETOTAL-NETAMOUNT<>0 AND "
                  "E.EMPID = {} AND SITYPE = {}",
                  employee, session.SIType));
  return totals;
}

long NextSerial(Session& session, long employee) {
  return session.data
             .FnVarGetDbValue(
                 fmt::format("Select Max(SERIALNO) From INS_ADVLOAN Where EMPID = {} And SITYPE = {}",
                             employee, session.SIType),
                 0)
             .ToLong() +
         1;
}

std::optional<Date> ReadDateOfLeaving(Session& session, long employee) {
  const Value left =
      session.data.FnVarGetDbValue(fmt::format("select DOL from mas_employee where empid= {}", employee), "");
  return left.IsDate() ? std::optional(left.date()) : std::nullopt;
}

}  // namespace ktl
