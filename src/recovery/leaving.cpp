#include "recovery/leaving.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "frame/writing_turn.h"
#include "instructions/components.h"
#include "recovery/change_audit.h"
#include "recovery/emi_months.h"
#include "runtime/text.h"

namespace ktl {

namespace {

Statement ListStatement(Session& session, long employee) {
  return session.Sql(
      "Select PD.PDLISTDESC As INSTYPE, AL.SINAME As INSNAME, AL.SITYPE, SUM(E.MDFYAMT), E.SERIALNO From "
      "INS_ADVLOAN AL, MAS_PULLDOWNVALUES PD, INS_EMIDETAIL E Where PD.REFID = 5 And PD.PDID = AL.SITYPE And "
      "AL.EMPID = E.EMPID And AL.SITYPE = E.SITYPE And AL.SERIALNO = E.SERIALNO And E.EMPID = {0} Group By "
      "AL.SINAME, PD.PDLISTDESC, AL.SITYPE, E.SERIALNO Union Select PD.PDLISTDESC As INSTYPE, SI.OTHNAME As "
      "INSNAME, SI.SITYPE, SUM(E.MDFYAMT), E.SERIALNO From INS_OTHER SI, MAS_PULLDOWNVALUES PD, "
      "INS_EMIDETAIL E Where PD.REFID = 5 And PD.PDID = SI.SITYPE And SI.EMPID = E.EMPID And SI.SITYPE = "
      "E.SITYPE And SI.SERIALNO = E.SERIALNO And E.EMPID = {0} And SI.SITYPE In (3, 4, 5) Group By "
      "PD.PDLISTDESC, SI.OTHNAME, SI.SITYPE, E.SERIALNO",
      employee);
}

double ReadRecovered(Session& session, const InstructionKey& key) {
  return session.data.Number(session.Sql(
      "Select ISNULL((Select SUM(E.MDFYAMT)  From INS_EMIDETAIL E, SLC_SALARYCALC_E SE, SLC_SALARYCALC_D SD "
      "Where E.EMPID = SE.EMPID And E.MONTHYEAR = SE.MONTHYEAR And SE.SALID = SD.SALID And E.EMPID = {0} And "
      "E.SITYPE = {1} And E.SERIALNO = {2} And SD.{3} > 0),0) + ISNULL((SELECT SUM(ISNULL(MDFYAMT,0)) FROM "
      "INS_EMIDETAIL WHERE EMPID = {0} AND SITYPE = {1} AND SERIALNO = {2} AND EMIRECVYN=1 ),0)",
      key.employee, key.type, key.serial, Statement(std::string(FactsOf(key.type).salaryColumn))));
}

// The total as it was shown: sums of the same rows differ in their last bits.
void RequireAsListed(Session& session, const PendingInstruction& pending, const Leaver& leaver) {
  const InstructionKey& key = pending.key;
  const Recordset now(
      session.Cn,
      session.Sql("SELECT SUM(MDFYAMT) FROM INS_EMIDETAIL Where EMPID = {} AND SITYPE = {} AND SERIALNO = {} "
                  "HAVING COUNT(*) > 0",
                  key.employee, key.type, key.serial));
  if (now.Eof() || ShownAmount(now[0].NumberOr0()) != ShownAmount(pending.total) ||
      ReadLeaver(session, key.employee) != leaver || EmpLockStatusOf(session, key.employee) == 1)
    throw ChangedMeanwhile();
}

// The months from the leaving month on become its own amounts.
void Fold(Session& session, const InstructionKey& key, long monthYear) {
  const Statement onward =
      session.Sql("Where  EMPID = {} AND SITYPE = {} AND SERIALNO = {} AND MONTHYEAR >= {}", key.employee,
                  key.type, key.serial, monthYear);
  session.Cn.Execute(session.Sql(
      "UPDATE INS_EMIDETAIL SET MDFYAMT=(SELECT  SUM(ISNULL(MDFYAMT,0)) FROM INS_EMIDETAIL {0}), "
      "MDFPRNAMT=(SELECT  SUM(ISNULL(MDFPRNAMT,0)) FROM INS_EMIDETAIL {0}), MDFINTAMT=(SELECT  "
      "SUM(ISNULL(MDFINTAMT,0)) FROM INS_EMIDETAIL {0}) Where EMPID = {1} And MONTHYEAR = {2} And SITYPE = "
      "{3} And SERIALNO = {4}",
      onward, key.employee, monthYear, key.type, key.serial));
}

void ClearLater(Session& session, const InstructionKey& key, const LeavingTerms& terms) {
  session.Cn.Execute(session.Sql(
      "UPDATE INS_EMIDETAIL SET MDFINTAMT=0,MDFPRNAMT=0,MDFYAMT=0 WHERE EMPID={} AND  SERIALNO = {} {}  "
      "SITYPE = {} AND  MONTHYEAR > {}",
      key.employee, key.serial, Statement(terms.deed == AfterLeaving::Fold ? "AND" : "And"), key.type,
      terms.monthYear));
}

}  // namespace

Leaver ReadLeaver(Session& session, long employee) {
  const Recordset row(session.Cn,
                      session.Sql("SELECT REFNO, EMPNAME, DOL FROM MAS_EMPLOYEE WHERE EMPID={}", employee));
  if (row.Eof()) return {};
  const std::optional<Date> left = DateIfAny(row["DOL"]);
  return {row["REFNO"].TextOrEmpty(), row["EMPNAME"].TextOrEmpty(),
          left ? clsDateHandle::FnStrInDateDTM(*left) : ""};
}

std::vector<PendingInstruction> FillPendingGrid(Session& session, long employee) {
  std::vector<PendingInstruction> pending;
  for (Recordset rs(session.Cn, ListStatement(session, employee)); !rs.Eof(); rs.MoveNext()) {
    pending.push_back({.key = {employee, InstructionType(rs["SITYPE"].ToInt()), rs["SERIALNO"].ToLong()},
                       .typeText = rs["INSTYPE"].TextOrEmpty(),
                       .name = rs["INSNAME"].TextOrEmpty(),
                       .total = rs[3].NumberOr0()});
  }
  return pending;
}

void FillRecoveredAmounts(Session& session, std::vector<PendingInstruction>& pending) {
  for (PendingInstruction& each : pending) each.recovered = ReadRecovered(session, each.key);
}

void DropSettled(std::vector<PendingInstruction>& pending) {
  std::erase_if(pending, [](const PendingInstruction& each) { return each.Balance() <= 0; });
}

long LeavingMonth(Session& session, const std::string& leavingDate) {
  const long calendarMonth = clsDateHandle::FnLngFindMonthValue(FormatDateText(leavingDate, "Mmm/yyyy"));
  return session.data
      .Guarding(session.Sql(
                    "SELECT MONTHYEAR FROM MAS_MONTHSALDATE WHERE '{}' BETWEEN CALCSTARTDATE AND CALCENDDATE",
                    leavingDate),
                calendarMonth)
      .ToLong();
}

void SettleAfterLeaving(Session& session, const PendingInstruction& pending, const LeavingTerms& terms) {
  const InstructionKey& key = pending.key;
  const bool folding = terms.deed == AfterLeaving::Fold;
  Transaction transaction(session.Cn);
  RequireAsListed(session, pending, terms.leaver);
  if (KeepsComponentsApart(session, key)) StoreComponents(session, key);
  if (folding) Fold(session, key, terms.monthYear);
  ClearLater(session, key, terms);
  if (folding) RaiseFlags(session, key, terms.monthYear);
  AuditChange(session, key, pending.typeText, " Cleared Pending EMI's",
              fmt::format(":Deleted Records = From Month/Year >= {}", FnStrFormatMonthYear(terms.monthYear)));
  transaction.Commit();
}

}  // namespace ktl
