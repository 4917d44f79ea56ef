#include "instructions/advloan_data.h"

#include <map>
#include <set>

#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"

namespace ktl {

namespace {

std::string LenderOf(Session& session, const InstructionKey& key) {
  const Statement where = WhereInstruction(key);
  const Recordset lenders(
      session.Cn, session.Sql("SELECT COUNT(INSTID) FROM INS_EMIDETAIL WHERE {} GROUP BY INSTID", where));
  if (lenders.RecordCount() != 1) return "";
  return session.data.Text(
      session.Sql("SELECT INSTNAME FROM MAS_INSTITUTION MI WHERE INSTID IN (SELECT TOP 1 INSTID FROM "
                  "INS_EMIDETAIL WHERE INSTID = MI.INSTID AND {})",
                  where));
}

// By hand before the month from which salaries are calculated.
double RecoveredByHand(Session& session, const InstructionKey& key, long salaryFrom) {
  return session.data.Number(session.Sql(
      "Select Sum(E.MDFYAMT) From INS_EMIDETAIL E Where E.EMPID = {} And E.SERIALNO = {} And E.SITYPE = {} "
      "And E.EMIRECVYN = 1 And E.MONTHYEAR < {}",
      key.employee, key.serial, key.type, salaryFrom));
}

Statement SalaryHeadOf(const InstructionKey& key) {
  return Statement(std::string(FactsOf(key.type).salaryHead));
}

Statement CalculatedSalaryOf(Session& session, const InstructionKey& key, const char* counted = "") {
  return session.Sql(
      "From INS_EMIDETAIL E, SLC_SALARYCALC_E SE, SLC_SALARYCALC_D SD Where E.EMPID = SE.EMPID And "
      "E.MONTHYEAR = SE.MONTHYEAR And SE.SALID = SD.SALID {}And E.EMPID = {} And E.SERIALNO = {} And "
      "E.SITYPE = {}",
      Statement(counted), key.employee, key.serial, key.type);
}

double RecoveredBySalary(Session& session, const InstructionKey& key) {
  return session.data.Number(session.Sql("Select Sum(E.MDFYAMT) {} And {} > -1",
                                         CalculatedSalaryOf(session, key, "And SE.INDICATOR <> 1  "),
                                         SalaryHeadOf(key)));
}

// Whatever the salary took: a month is recovered when one has been calculated.
std::set<long> ReadCalculatedMonths(Session& session, const InstructionKey& key) {
  std::set<long> months;
  for (Recordset rs(session.Cn, session.Sql("Select DISTINCT E.EMIRECVYN, {}, E.MONTHYEAR {}",
                                            SalaryHeadOf(key), CalculatedSalaryOf(session, key)));
       !rs.Eof(); rs.MoveNext())
    months.insert(rs[2].ToLong());
  return months;
}

void AddFigures(Session& session, AdvLoanListRow& row, const InstructionKey& key, long salaryFrom) {
  const Statement where = WhereInstruction(key);
  const Recordset sums(session.Cn,
                       session.Sql("Select Sum(MDFYAMT), Sum(INTAMT) From INS_EMIDETAIL Where {}", where));
  row.emi = sums[0].NumberOr0();
  if (ReadNameRules(session, key.type, row.name).REDUCINGBALYN) row.emiInterest = sums[1].NumberOr0();
  row.receipts = session.data.Number(session.Sql("Select Sum(RCPTAMT) From INS_RECEIPTS Where {}", where));
  row.recovered = RecoveredByHand(session, key, salaryFrom) + RecoveredBySalary(session, key);
}

Statement ScheduleStatement(Session& session, const InstructionKey& key) {
  if (!HasInstitution(key.type)) {
    return session.Sql(
        "Select COUNTER, MONTHYEAR, EMIAMT, MDFYAMT, INTAMT, ACTPRNAMT, ACTINTAMT, MDFPRNAMT, MDFINTAMT From "
        "INS_EMIDETAIL Where {} Order By MONTHYEAR",
        WhereInstruction(key));
  }
  // A month without a lender of the type does not show.
  return session.Sql(
      "Select E.COUNTER, E.MONTHYEAR, E.EMIAMT, E.MDFYAMT, E.INTAMT, E.ACTPRNAMT, E.ACTINTAMT, E.MDFPRNAMT, "
      "E.MDFINTAMT, I.INSTNAME From INS_EMIDETAIL E, MAS_INSTITUTION I Where E.INSTID = I.INSTID And "
      "I.TYPEID = E.SITYPE And E.EMPID = {} And E.SERIALNO = {} And E.SITYPE = {} Order By E.MONTHYEAR",
      key.employee, key.serial, key.type);
}

std::map<long, bool> ReadHandMarks(Session& session, const InstructionKey& key) {
  std::map<long, bool> marks;
  for (Recordset rs(session.Cn, session.Sql("Select COUNTER, EMIRECVYN From INS_EMIDETAIL Where {}",
                                            WhereInstruction(key)));
       !rs.Eof(); rs.MoveNext()) {
    const ScheduleMonth month = ReadScheduleMonth(rs);
    marks[month.counter] = month.markedRecovered;
  }
  return marks;
}

Statement NamedRow(Session& session, InstructionType type, std::string_view name) {
  return session.Sql("Select * From INS_MASTER Where SITYPE = {} And UPPER(SINAME) = '{}'", type, name);
}

}  // namespace

bool NameExists(Session& session, InstructionType type, std::string_view name) {
  return session.data.FnBlnRecExists(NamedRow(session, type, name));
}

NameRules ReadNameRules(Session& session, InstructionType type, std::string_view name) {
  const Recordset rs(session.Cn, NamedRow(session, type, name));
  if (rs.Eof()) return {};
  return {.AMTLIMIT = rs["AMTLIMIT"].NumberOr0(),
          .ALLOWLIMIT = static_cast<long>(rs["ALLOWLIMIT"].NumberOr0()),
          .EMIRECCNT = static_cast<long>(rs["EMIRECCNT"].NumberOr0()),
          .INTRRATE = rs["INTRRATE"].NumberOr0(),
          .REDUCINGBALYN = IsSet(rs["REDUCINGBALYN"])};
}

bool ReadSepPiYN(Session& session, InstructionType type, std::string_view name) {
  return session.data.Number(session.Sql("Select SEPPIYN From INS_MASTER Where SITYPE = {} And SINAME = '{}'",
                                         type, name)) == 1;
}

bool MayHaveHouseLoan(Session& session, long employee, InstructionType type, std::string_view name) {
  return session.data.Number(session.Sql("Select TDSYN From MAS_EMPLOYEE Where EMPID = {}", employee)) != 0 &&
         session.data.Number(session.Sql("Select TDSYN From INS_MASTER Where SITYPE = {} And SINAME = '{}'",
                                         type, name)) != 0;
}

bool IsAdvLoanStored(Session& session, const InstructionKey& key) {
  return session.data.FnBlnRecExists(
      session.Sql("Select SERIALNO From INS_ADVLOAN Where {}", WhereInstruction(key)));
}

std::optional<AdvLoanDetail> ReadAdvLoan(Session& session, const InstructionKey& key) {
  const Recordset rs(
      session.Cn,
      session.Sql("Select SINAME, LOANACNO, SIDATE, ACTAMT, INTAMT, REMARKS From INS_ADVLOAN Where {}",
                  WhereInstruction(key)));
  if (rs.Eof()) return std::nullopt;
  return AdvLoanDetail{
      .name = rs["SINAME"].TextOrEmpty(),
      .account = rs["LOANACNO"].TextOrEmpty(),
      .remarks = rs["REMARKS"].TextOrEmpty(),
      .date = DateIfAny(rs["SIDATE"]),
      .amount = rs["ACTAMT"].NumberOr0(),
      .interest = rs["INTAMT"].NumberOr0(),
      .institution = key.type == InstructionType::Loan ? LenderOf(session, key) : "",
  };
}

std::vector<AdvLoanListRow> ReadAdvLoanList(Session& session, long employee, InstructionType type) {
  const long salaryFrom = FnLngMonthYear(
      session.data.Text(session.Sql("Select SALCALCFROM From MAS_EMPLOYEE Where EMPID = {}", employee)));
  std::vector<AdvLoanListRow> list;
  Recordset rs(session.Cn,
               session.Sql("SELECT  IA.SERIALNO, IA.SINAME, IA.LOANACNO, IA.SIDATE, IA.ACTAMT AS ACTAMT, "
                           "IA.INTAMT AS INTAMT, 0 AS EMIINTEREST, 0 AS RECEIPTS, 0 AS RECVDEMI, IA.REMARKS "
                           "FROM INS_ADVLOAN IA WHERE IA.EMPID = {} AND IA.SITYPE = {} ORDER BY IA.SERIALNO",
                           employee, type));
  for (; !rs.Eof(); rs.MoveNext()) {
    AdvLoanListRow row{.serial = static_cast<long>(rs["SERIALNO"].NumberOr0()),
                       .name = rs["SINAME"].TextOrEmpty(),
                       .account = rs["LOANACNO"].TextOrEmpty(),
                       .date = DateIfAny(rs["SIDATE"]),
                       .amount = rs["ACTAMT"].NumberOr0(),
                       .interest = rs["INTAMT"].NumberOr0(),
                       .remarks = rs["REMARKS"].TextOrEmpty()};
    AddFigures(session, row, {employee, type, row.serial}, salaryFrom);
    list.push_back(std::move(row));
  }
  return list;
}

std::vector<ScheduleMonth> ReadSchedule(Session& session, const InstructionKey& key) {
  const std::map<long, bool> marks = ReadHandMarks(session, key);
  const std::set<long> calculated = ReadCalculatedMonths(session, key);
  std::vector<ScheduleMonth> schedule;
  for (Recordset rs(session.Cn, ScheduleStatement(session, key)); !rs.Eof(); rs.MoveNext()) {
    ScheduleMonth month = ReadScheduleMonth(rs);
    if (const auto mark = marks.find(month.counter); mark != marks.end())
      month.markedRecovered = mark->second;
    month.recoveredBySalary = calculated.contains(month.monthYear);
    schedule.push_back(std::move(month));
  }
  return schedule;
}

AdvLoanTotals ReadTotals(Session& session, long employee, InstructionType type) {
  const Statement ofEmployee = session.Sql("EMPID = {} And SITYPE = {}", employee, type);
  return {
      .amount = session.data.Number(session.Sql("Select Sum(ACTAMT) From INS_ADVLOAN Where {}", ofEmployee)),
      .interest =
          session.data.Number(session.Sql("Select Sum(INTAMT) From INS_ADVLOAN Where {}", ofEmployee)),
      // Each sum counts 0 when there is nothing to add, so that months marked by hand show without a receipt.
      .receipts = session.data.Number(session.Sql(
          "Select ISNULL(Sum(RCPTAMT),0) + ISNULL((SELECT SUM(ISNULL(MDFYAMT,0)) FROM INS_EMIDETAIL WHERE "
          "EMPID = {} AND SITYPE = {} AND EMIRECVYN=1 ),0) From INS_RECEIPTS Where {}",
          employee, type, ofEmployee)),
      .fromSalary = session.data.Number(session.Sql(
          "Select Sum(ISNULL(MDFYAMT,0))  AS Total From INS_EMIDETAIL D,SLC_SALARYCALC_E E Where "
          "D.EMPID=E.EMPID AND D.MONTHYEAR = E.MONTHYEAR AND INDICATOR=0 AND ETOTAL-NETAMOUNT<>0 AND "
          "E.EMPID = {} AND SITYPE = {}",
          employee, type)),
  };
}

bool HasReceipts(Session& session, const InstructionKey& key) {
  return session.data.FnBlnRecExists(
      session.Sql("Select EMPID From INS_RECEIPTS Where {}", WhereInstruction(key)));
}

bool HasHouseLoan(Session& session, const InstructionKey& key) {
  return session.data.FnBlnRecExists(
      session.Sql("Select EMPID From INS_HLOAN Where {}", WhereInstruction(key)));
}

long NextSerial(Session& session, long employee, InstructionType type) {
  const Statement table{std::string(FactsOf(type).table)};
  const double last = session.data.Number(
      session.Sql("Select Max(SERIALNO) From {} Where EMPID = {} And SITYPE = {}", table, employee, type));
  if (IsSerial(last + 1)) return static_cast<long>(last) + 1;
  // No number follows the highest one: the first that is free.
  long free = 1;
  for (Recordset rs(session.Cn, session.Sql("Select SERIALNO From {} Where EMPID = {} And SITYPE = {} And "
                                            "SERIALNO > 0 Order By SERIALNO",
                                            table, employee, type));
       !rs.Eof() && rs[0].NumberOr0() == static_cast<double>(free); rs.MoveNext())
    ++free;
  return free;
}

}  // namespace ktl
