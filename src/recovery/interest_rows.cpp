#include "recovery/interest_rows.h"

#include <fmt/format.h>

#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

std::string JoinOf(Session& session, const InstructionKey& key, const std::string& name) {
  return fmt::format(
      "FROM INS_EMIDETAIL IED, INS_ADVLOAN ILA WHERE IED.EMPID=ILA.EMPID AND IED.SITYPE=ILA.SITYPE AND "
      "IED.SERIALNO=ILA.SERIALNO AND IED.SITYPE={} AND IED.EMPID={} AND IED.SERIALNO={} AND ILA.SINAME='{}'",
      key.type, key.employee, key.serial, SqlText(session, name));
}

std::string Parts(const Value& principal, const Value& interest, const Value& total) {
  const auto shown = [](const Value& amount) { return FormatNumber(amount.NumberOr0(), "0.00"); };
  return fmt::format("{} + {} = {}", shown(principal), shown(interest), shown(total));
}

// ":Apr/2010 Actual ... (old), Modified ... (old)", "" for a row that stays as it is.
std::string AuditOfRow(Session& session, const InterestRow& row, const std::string& join) {
  const Recordset old(session.Cn,
                      fmt::format("SELECT IED.ACTPRNAMT, IED.ACTINTAMT, IED.EMIAMT, IED.MDFPRNAMT, "
                                  "IED.MDFINTAMT, IED.MDFYAMT {} AND IED.MONTHYEAR={}",
                                  join, row.monthYear));
  if (old.Eof()) return "";
  const InterestRow before{row.monthYear, old["ACTPRNAMT"].NumberOr0(), old["ACTINTAMT"].NumberOr0(),
                           old["MDFPRNAMT"].NumberOr0(), old["MDFINTAMT"].NumberOr0()};
  if (before == row) return "";
  return fmt::format(":{}:Actual = {} ({}):Modified = {} ({})", FnStrFormatMonthYear(row.monthYear),
                     Parts(row.actualPrincipal, row.actualInterest, row.ActualTotal()),
                     Parts(old["ACTPRNAMT"], old["ACTINTAMT"], old["EMIAMT"]),
                     Parts(row.modifiedPrincipal, row.modifiedInterest, row.ModifiedTotal()),
                     Parts(old["MDFPRNAMT"], old["MDFINTAMT"], old["MDFYAMT"]));
}

void WriteRow(Session& session, const InterestRow& row, const std::string& join) {
  session.Cn.Execute(fmt::format(
      "UPDATE INS_EMIDETAIL SET ACTPRNAMT = {}, ACTINTAMT = {}, EMIAMT = {}, MDFPRNAMT = {}, MDFINTAMT = {}, "
      "MDFYAMT = {} {} AND IED.MONTHYEAR={}",
      SqlAmount(row.actualPrincipal), SqlAmount(row.actualInterest), SqlAmount(row.ActualTotal()),
      SqlAmount(row.modifiedPrincipal), SqlAmount(row.modifiedInterest), SqlAmount(row.ModifiedTotal()), join,
      row.monthYear));
}

}  // namespace

std::vector<InterestRow> ReadInterestRows(Session& session, const InstructionKey& key,
                                          const std::string& name) {
  std::vector<InterestRow> rows;
  Recordset rs(
      session.Cn,
      fmt::format("SELECT ILA.*, IED.ACTPRNAMT AS ACTPrinciple, IED.ACTINTAMT AS ACTINTEREST, "
                  "IED.MONTHYEAR, IED.MDFPRNAMT AS MDFPrinciple, IED.MDFINTAMT AS MDFINTEREST {} ORDER "
                  "BY IED.MONTHYEAR",
                  JoinOf(session, key, name)));
  for (; !rs.Eof(); rs.MoveNext()) {
    rows.push_back({rs["MONTHYEAR"].ToLong(), rs["ACTPrinciple"].NumberOr0(), rs["ACTINTEREST"].NumberOr0(),
                    rs["MDFPrinciple"].NumberOr0(), rs["MDFINTEREST"].NumberOr0()});
  }
  return rows;
}

std::string WriteInterestRows(Session& session, const InstructionKey& key, const std::string& name,
                              const std::vector<InterestRow>& rows) {
  const std::string join = JoinOf(session, key, name);
  const bool audited = FnBlnAuditOn(session);
  std::string audit;
  double interest = 0;
  for (const InterestRow& row : rows) {
    if (audited) audit += AuditOfRow(session, row, join);
    WriteRow(session, row, join);
    RaiseEditMode(session, key.employee, OneMonth(row.monthYear), AttendanceWording::EmployeeFirst);
    interest += row.modifiedInterest;
  }
  session.Cn.Execute(
      fmt::format("UPDATE INS_ADVLOAN SET INTAMT = {} WHERE SITYPE={} AND SERIALNO = {} AND EMPID = {} AND "
                  "SINAME='{}'",
                  SqlAmount(interest), key.type, key.serial, key.employee, SqlText(session, name)));
  return audit;
}

}  // namespace ktl
