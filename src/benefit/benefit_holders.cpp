#include "benefit/benefit_holders.h"

#include <algorithm>
#include <map>

#include "benefit/month_statement.h"
#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/employee_number.h"
#include "frame/rights.h"
#include "frame/session.h"

namespace ktl {

namespace {

Statement HoldersOf(const Session& session, const BenefitYear& year) {
  return session.Sql(
      "FROM MAS_EMPLOYEE E, INS_ADVLOAN IA, INS_EMIDETAIL IE, INS_MASTER IM WHERE E.EMPID = IA.EMPID AND "
      "IA.EMPID = IE.EMPID AND IA.SERIALNO = IE.SERIALNO AND IA.SITYPE = IE.SITYPE AND IM.SITYPE = IA.SITYPE "
      "AND IM.SINAME = IA.SINAME AND IE.MONTHYEAR BETWEEN {} AND {} AND IM.SEPPIYN=1 AND IM.SBIIFBYN=1 AND "
      "IA.SITYPE<=2 AND E.TDSYN=1",
      year.firstMonth, year.lastMonth);
}

Statement LoansOf(const Session& session, const BenefitYear& year, long employee, const std::string& loan) {
  return session.Sql(
      "WHERE IA.EMPID = IE.EMPID AND IA.SERIALNO = IE.SERIALNO AND IA.SITYPE = IE.SITYPE AND IA.EMPID = {} AND "
      "IA.SINAME='{}' AND IE.MONTHYEAR BETWEEN {} AND {}",
      employee, loan, year.firstMonth, year.lastMonth);
}

// Everybody's at once: one read for each of them would take as long as all the rest.
std::map<long, std::string> ReadLoanNames(Session& session, const BenefitYear& year,
                                          const Statement& filter) {
  std::map<long, std::string> names;
  Recordset rs(session.Cn, session.Sql("SELECT DISTINCT IE.EMPID,IA.SINAME {}{} ORDER BY IE.EMPID,IA.SINAME",
                                       HoldersOf(session, year), filter));
  for (; !rs.Eof(); rs.MoveNext()) {
    std::string& all = names[rs[0].ToLong()];
    all += (all.empty() ? "" : ",") + rs[1].TextOrEmpty();
  }
  return names;
}

}  // namespace

Statement EmployeeFilter(Session& session, const std::string& search) {
  Statement filter = ClassSecurityCondition(session, " AND E.EMPID ", false);
  if (search.empty()) return filter;
  return filter +
         session.Sql(" AND ( CHARINDEX('{0}', UPPER(E.EMPNAME)) > 0 OR CHARINDEX('{0}', UPPER(E.{1})) > 0) ",
                     search, Statement(NumberingOf(session).column));
}

std::vector<BenefitHolder> ReadBenefitHolders(Session& session, const BenefitYear& year,
                                              const std::string& loan, const std::string& search) {
  const Statement filter = EmployeeFilter(session, search);
  const Statement ofLoan = loan.empty() ? Statement() : session.Sql(" AND IA.SINAME='{}'", loan);
  std::vector<BenefitHolder> holders;
  Recordset rs(session.Cn,
               session.Sql("SELECT DISTINCT CASE WHEN EXISTS ( SELECT EMPREFNOYN From MAS_OPTSET WHERE "
                           "EMPREFNOYN = 1 ) THEN E.REFNO ELSE CAST(E.EMPID AS NVARCHAR(10)) END AS "
                           "EMPID,E.EMPNAME,E.EMPID AS REFID,E.REFNO {}{}{} ORDER BY {}",
                           HoldersOf(session, year), ofLoan, filter,
                           Statement(session.options.EMPREFNOYN ? "REFNO" : "REFID")));
  if (rs.Eof()) return holders;
  const std::map<long, std::string> names = ReadLoanNames(session, year, filter);
  holders.reserve(rs.RecordCount());
  for (; !rs.Eof(); rs.MoveNext()) {
    const long employee = rs["REFID"].ToLong();
    const auto loans = names.find(employee);
    holders.push_back({employee, rs["EMPID"].TextOrEmpty(), rs["EMPNAME"].TextOrEmpty(),
                       loans == names.end() ? "" : loans->second});
  }
  return holders;
}

std::vector<ListRow> ReadLoanSerials(Session& session, const BenefitYear& year, long employee,
                                     const std::string& loan) {
  const Statement his = LoansOf(session, year, employee, loan);
  const long count = session.data.Long(
      session.Sql("SELECT COUNT(CNT) FROM( SELECT ISNULL(IE.SERIALNO,0) AS CNT FROM INS_ADVLOAN IA "
                  ",INS_EMIDETAIL IE {} GROUP BY IE.SERIALNO) AS A",
                  his));
  std::vector<ListRow> serials;
  if (count < 2) return serials;
  Recordset rs(session.Cn,
               session.Sql("SELECT ROW_NUMBER() OVER (ORDER BY IA.SERIALNO) AS SLNO,IA.SERIALNO FROM "
                           "INS_ADVLOAN IA, INS_EMIDETAIL IE {} GROUP BY IA.SERIALNO ",
                           his));
  for (; !rs.Eof(); rs.MoveNext()) serials.push_back({rs["SERIALNO"].ToText(), rs["SLNO"].ToText()});
  return serials;
}

std::string BenefitMonth::Name() const {
  if (monthYear != 0) return FnStrFormatMonthYear(monthYear);
  return loanDate ? FnStrFormatMonthYear(MonthYearOf(*loanDate)) : "";
}

std::vector<BenefitMonth> ReadBenefitMonths(Session& session, const Statement& months) {
  std::vector<BenefitMonth> rows;
  for (Recordset rs(session.Cn, months); !rs.Eof(); rs.MoveNext()) {
    rows.push_back({.monthYear = rs["MONTHYEAR"].ToLong(),
                    .loanDate = DateIfAny(rs["SIDATE"]),
                    .opening = rs["OPBAL"].NumberOr0(),
                    .principal = rs["MOD PRNC"].NumberOr0(),
                    .interest = rs["INTEREST"].NumberOr0(),
                    .benchmark = rs["SBI INT"].NumberOr0(),
                    .difference = rs["TOTAL"].NumberOr0()});
  }
  std::ranges::stable_sort(rows, {}, &BenefitMonth::monthYear);
  return rows;
}

}  // namespace ktl
