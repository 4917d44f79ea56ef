#include "benefit/month_statement.h"

#include "benefit/benchmark_rate.h"
#include "frame/session.h"

namespace ktl {

namespace {

Statement ReceiptsWhose(const char* month) {
  return Statement(
      std::string("ISNULL((SELECT SUM(ISNULL(RCPTAMT, 0)) FROM INS_RECEIPTS WHERE SITYPE <= 2 AND SERIALNO = "
                  "IE.SERIALNO AND EMPID = IE.EMPID AND YEAR(RCPTDATE) * 12 + MONTH(RCPTDATE) ") +
      month + " IE.MONTHYEAR),0)");
}

Statement OneEmployeesLoans(const Session& session, const BenefitYear& year, long employee,
                            const std::string& name) {
  return session.Sql("INS_EMIDETAIL IE, INS_ADVLOAN IA WHERE {} AND IA.EMPID = {} AND IA.SINAME='{}'",
                     MonthsOfLoans(session, year), employee, name);
}

const char* const kMonthColumns = "IE.MONTHYEAR, IA.SIDATE, ISNULL(IE.MDFPRNAMT, 0) AS [MOD PRNC]";

}  // namespace

Statement WriteMonths(const Session& session, const MonthStatement& months) {
  return session.Sql(
      "SELECT {0}, {1} AS OPBAL, ROUND({2} * {4} / 12, 2) AS [SBI INT], ROUND(ISNULL(IE.MDFINTAMT, 0), 2) AS "
      "INTEREST, ROUND({3} * {4} / 12, 2) - ISNULL(IE.MDFINTAMT, 0) AS TOTAL FROM {5}",
      months.leading, months.opening, months.benchmark, months.difference, months.rate, months.from);
}

Statement MonthsOfLoans(const Session& session, const BenefitYear& year) {
  return session.Sql(
      "IE.EMPID = IA.EMPID AND IE.SERIALNO = IA.SERIALNO AND IE.SITYPE = IA.SITYPE AND IE.MONTHYEAR BETWEEN "
      "{} AND {}",
      year.firstMonth, year.lastMonth);
}

Statement LaterPrincipal(const Session& session, const std::string& amount, int nothing) {
  return session.Sql(
      "ISNULL((SELECT SUM({}) FROM INS_EMIDETAIL WHERE EMPID = IE.EMPID AND SERIALNO = IE.SERIALNO AND SITYPE "
      "= IE.SITYPE AND MONTHYEAR >= IE.MONTHYEAR),{})",
      Statement(amount), nothing);
}

Statement ReceiptsSoFar() { return ReceiptsWhose("<="); }
Statement ReceiptsOfMonth() { return ReceiptsWhose("="); }

Statement Less(const Session& session, const Statement& principal, const Statement& receipts) {
  return session.Sql("({} - {})", principal, receipts);
}

Statement MonthsOfOneLoan(const Session& session, const BenefitYear& year, long employee,
                          const std::string& name) {
  const Statement balance = Less(session, LaterPrincipal(session, "ISNULL(MDFPRNAMT,0)", 0), ReceiptsSoFar());
  return session.Sql("SELECT * FROM ({}) AS TMP WHERE OPBAL>0",
                     WriteMonths(session, {.leading = Statement(kMonthColumns),
                                           .opening = balance,
                                           .benchmark = balance,
                                           .difference = balance,
                                           .rate = RateOverLoans(session, year.key),
                                           .from = OneEmployeesLoans(session, year, employee, name)}));
}

Statement MonthsOfSerial(const Session& session, const BenefitYear& year, long employee,
                         const std::string& name, long serial, double plainRate) {
  const Statement later = LaterPrincipal(session, "MDFPRNAMT", 0);
  return WriteMonths(session,
                     {.leading = Statement(kMonthColumns),
                      .opening = later,
                      .benchmark = later,
                      .difference = Less(session, later, ReceiptsOfMonth()),
                      .rate = session.Sql("{}", plainRate / 100),
                      .from = session.Sql("{} AND IA.SERIALNO = {}",
                                          OneEmployeesLoans(session, year, employee, name), serial)});
}

}  // namespace ktl
