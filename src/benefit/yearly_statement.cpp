#include "benefit/yearly_statement.h"

#include <string>

#include "benefit/benchmark_rate.h"
#include "benefit/month_statement.h"
#include "frame/session.h"

namespace ktl {

namespace {

// A month whose instalments hold no principal at all counts as 2 in the benchmark interest of the yearly run,
// and as 0 everywhere else.
constexpr int kNothingInRun = 2;

const char* const kHasBenefit = "[SBI INT] > interest";

const char* const kSums =
    "SUM([MOD PRNC]) AS [MOD PRNC],MAX([OPBAL]) AS OPBAL,SUM([SBI INT]) AS [SBI INT],SUM(INTEREST) AS "
    "INTEREST,SUM(TOTAL) AS TOTAL";
const char* const kEmployeeSums =
    "EMPID,EMPNAME,SUM([LOAN AMT]) AS [LOAN AMT],SUM([MOD PRNC]) AS [MOD PRNC],SUM([OPBAL]) AS OPBAL,SUM([SBI "
    "INT]) AS [SBI INT],SUM(INTEREST) AS INTEREST,SUM(TOTAL) AS TOTAL";

const char* const kQualifying =
    "IM.SITYPE = IA.SITYPE AND IM.SINAME = IA.SINAME AND E.EMPID = IA.EMPID AND IA.SITYPE<=2 AND E.TDSYN=1 "
    "AND IM.SEPPIYN=1 AND IM.SBIIFBYN=1";

Statement QualifyingMonths(const Session& session, const BenefitYear& year) {
  return session.Sql("INS_EMIDETAIL IE, INS_ADVLOAN IA, INS_MASTER IM, MAS_EMPLOYEE E WHERE {} AND {}",
                     MonthsOfLoans(session, year), Statement(kQualifying));
}

// The months of all qualifying loans.
Statement SaidMonths(const Session& session, const BenefitYear& year) {
  const auto balance = [&](int nothing) {
    return Less(session, LaterPrincipal(session, "MDFPRNAMT", nothing), ReceiptsSoFar());
  };
  return WriteMonths(
      session, {.leading = Statement("E.EMPID, E.EMPNAME, IA.SERIALNO, ISNULL(IA.ACTAMT, 0) AS [LOAN AMT], "
                                     "ISNULL(IE.MDFPRNAMT, 0) AS [MOD PRNC]"),
                .opening = balance(0),
                .benchmark = balance(kNothingInRun),
                .difference = balance(0),
                .rate = RateOverLoans(session, year.key),
                .from = QualifyingMonths(session, year)});
}

// A query in a FROM that is to be run once, and not written into each place that asks for its columns: so
// many rows, and a condition around it.
constexpr int kAllRows = 2147483647;

// On the embedded store: what is the same for all months of a loan, the rate once a name. In the order in
// which the instalments lie in the file.
Statement KeptLoans(const Session& session, const BenefitYear& year) {
  const Statement names = session.Sql("SELECT TOP {} IA.*, {} AS RATE FROM INS_MASTER IA", kAllRows,
                                      RateOverLoans(session, year.key));
  return session.Sql(
      "SELECT TOP {0} E.EMPID, E.EMPNAME, IA.SERIALNO, IA.SITYPE, ISNULL(IA.ACTAMT, 0) AS [LOAN AMT], IM.RATE, "
      "(SELECT KTL_LATERSUMS(MONTHYEAR, MDFPRNAMT, {1}) FROM INS_EMIDETAIL WHERE EMPID = IA.EMPID AND SERIALNO "
      "= IA.SERIALNO AND SITYPE = IA.SITYPE AND MONTHYEAR >= {1}) AS LATER, (SELECT COUNT(*) FROM "
      "INS_RECEIPTS WHERE SITYPE <= 2 AND SERIALNO = IA.SERIALNO AND EMPID = IA.EMPID) AS RECEIPTS FROM "
      "MAS_EMPLOYEE E CROSS JOIN INS_ADVLOAN IA CROSS JOIN ({2}) AS IM WHERE {3}",
      kAllRows, year.firstMonth, names, Statement(kQualifying));
}

// ... and its months. Where no receipts were given none are looked for.
Statement KeptMonths(const Session& session, const BenefitYear& year) {
  const Statement receipts = session.Sql("CASE WHEN LN.RECEIPTS = 0 THEN 0 ELSE {} END", ReceiptsSoFar());
  const auto balance = [&](int nothing) {
    return Less(session,
                session.Sql("ISNULL(KTL_LATERSUM(LN.LATER, IE.MONTHYEAR, {}),{})", year.firstMonth, nothing),
                receipts);
  };
  return WriteMonths(
      session,
      {.leading = Statement("ISNULL(IE.MDFPRNAMT, 0) AS [MOD PRNC]"),
       .opening = balance(0),
       .benchmark = balance(kNothingInRun),
       .difference = balance(0),
       .rate = Statement("LN.RATE"),
       .from = session.Sql(
           "INS_EMIDETAIL IE WHERE IE.EMPID = LN.EMPID AND IE.SERIALNO = LN.SERIALNO AND IE.SITYPE = "
           "LN.SITYPE AND IE.MONTHYEAR BETWEEN {} AND {}",
           year.firstMonth, year.lastMonth)});
}

// A loan a row, with the sums of all its months and of those with a benefit.
Statement KeepSums(const Session& session, const BenefitYear& year) {
  return session.Sql(
      "DROP TABLE IF EXISTS #KTLLOANS SELECT LN.EMPID, LN.EMPNAME, LN.SERIALNO, LN.[LOAN AMT], (SELECT "
      "KTL_PICKEDSUMS(CASE WHEN {} THEN 1 ELSE 0 END, [MOD PRNC], OPBAL, [SBI INT], INTEREST, TOTAL) FROM ({}) AS "
      "MN) AS SUMS INTO #KTLLOANS FROM ({}) AS LN WHERE LN.LATER IS NOT NULL ",
      Statement(kHasBenefit), KeptMonths(session, year), KeptLoans(session, year));
}

Statement KeptSums(const Session& session, bool withBenefit) {
  return session.Sql(
      "(SELECT SERIALNO, EMPID, EMPNAME, [LOAN AMT], KTL_PICKEDSUM(SUMS, {0}, 0) AS MONTHS, KTL_PICKEDSUM(SUMS, "
      "{0}, 1) AS [MOD PRNC], KTL_PICKEDSUM(SUMS, {0}, 2) AS OPBAL, KTL_PICKEDSUM(SUMS, {0}, 3) AS [SBI INT], "
      "KTL_PICKEDSUM(SUMS, {0}, 4) AS INTEREST, KTL_PICKEDSUM(SUMS, {0}, 5) AS TOTAL FROM #KTLLOANS WHERE "
      "KTL_PICKEDSUM(SUMS, {0}, 0) > 0) AS tmp",
      withBenefit ? 1 : 0);
}

// What the loans are summed from: all their months, or those with a benefit.
struct MonthsOf {
  Statement every;
  Statement benefit;
  const char* count;
};

MonthsOf Said(const Session& session, const BenefitYear& year) {
  const Statement months = session.Sql("({}) AS tmp", SaidMonths(session, year));
  return {months, session.Sql("{} WHERE {}", months, Statement(kHasBenefit)), "COUNT(EMPID)"};
}

MonthsOf Kept(const Session& session) {
  return {KeptSums(session, false), KeptSums(session, true), "SUM(MONTHS)"};
}

Statement PerLoan(const Session& session, const Statement& months, const char* count) {
  return session.Sql(
      "SELECT SERIALNO,EMPID,EMPNAME,[LOAN AMT],{},{} CNT FROM {} GROUP BY SERIALNO,EMPID,EMPNAME,[LOAN AMT]",
      Statement(kSums), Statement(count), months);
}

// Per employee; of the loans those that the rule leaves.
struct EmployeeWrap {
  const char* columns;
  const char* loans;
  const char* having = "";
};
Statement PerEmployee(const Session& session, const Statement& loans, const EmployeeWrap& wrap) {
  return session.Sql("SELECT {} FROM ({}) AS tmp1 {} GROUP BY EMPID,EMPNAME {}", Statement(wrap.columns),
                     loans, Statement(wrap.loans), Statement(wrap.having));
}

const char* LoansLeft(LoanRule rule) {
  if (rule == LoanRule::PaidMoreThan20000) return " WHERE tmp1.[MOD PRNC]<>OPBAL AND tmp1.[MOD PRNC] >20000";
  return rule == LoanRule::SeveralMonths ? "WHERE CNT>1" : "";
}

const char* LoansListed(LoanRule rule) {
  return rule == LoanRule::SeveralMonths ? "WHERE CNT>1 and  TOTAL>0" : LoansLeft(rule);
}

Statement Clear(const Session& session, const BenefitYear& year, const char* in, const Statement& employees) {
  return session.Sql(
      " UPDATE MAS_LOANINTUPDATE SET ORIGINALINT=0 WHERE  FINANCIALYEAR = {} AND EMPID {}  ({})",
      year.firstYear, Statement(in), employees);
}

// All three over the same months.
struct OverMonths {
  Statement clearWithoutBenefit, clearUnlisted, main;
};
OverMonths WriteOver(const Session& session, const BenefitYear& year, LoanRule rule, const MonthsOf& months) {
  const Statement everyMonth = PerLoan(session, months.every, months.count);
  return {
      Clear(session, year, "IN",
            PerEmployee(session, everyMonth, {"EMPID", LoansLeft(rule), "HAVING MAX(TOTAL) <=0 "})),
      Clear(session, year, "NOT IN", PerEmployee(session, everyMonth, {"EMPID", LoansListed(rule)})),
      PerEmployee(session, PerLoan(session, months.benefit, months.count), {kEmployeeSums, LoansLeft(rule)})};
}

}  // namespace

YearlyStatements WriteYearlyStatements(const Session& session, const BenefitYear& year, LoanRule rule) {
  const OverMonths said = WriteOver(session, year, rule, Said(session, year));
  const OverMonths kept = WriteOver(session, year, rule, Kept(session));
  return {{said.clearWithoutBenefit, KeepSums(session, year) + kept.clearWithoutBenefit},
          {said.clearUnlisted, kept.clearUnlisted},
          {said.main, kept.main + Statement(" DROP TABLE IF EXISTS #KTLLOANS")}};
}

Statement LoansOfEmployee(const Session& session, const BenefitYear& year, long employee) {
  const Statement balance = Less(session, LaterPrincipal(session, "MDFPRNAMT", 0), ReceiptsSoFar());
  return session.Sql(
      "SELECT EMPID,EMPNAME,[LOAN AMT],SINAME,SERIALNO,SIDATE,{} FROM ({}) AS tmp GROUP BY "
      "EMPID,EMPNAME,[LOAN AMT],SINAME,SERIALNO,SIDATE",
      Statement(kSums),
      WriteMonths(session,
                  {.leading = Statement("E.EMPID, E.EMPNAME, IA.SERIALNO, IA.SINAME, IA.SIDATE, "
                                        "ISNULL(IA.ACTAMT, 0) AS [LOAN AMT], ISNULL(IE.MDFPRNAMT, 0) AS [MOD "
                                        "PRNC]"),
                   .opening = balance,
                   .benchmark = balance,
                   .difference = balance,
                   .rate = RateOverLoans(session, year.key),
                   .from = session.Sql("{} AND E.EMPID = {}", QualifyingMonths(session, year), employee)}));
}

}  // namespace ktl
