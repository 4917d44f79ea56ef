#include "recovery/interest_rows.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "common/titles.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "recovery/emi_months.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

Statement JoinOf(Session& session, const InstructionKey& key, const std::string& name) {
  return session.Sql(
      "FROM INS_EMIDETAIL IED, INS_ADVLOAN ILA WHERE IED.EMPID=ILA.EMPID AND IED.SITYPE=ILA.SITYPE AND "
      "IED.SERIALNO=ILA.SERIALNO AND IED.SITYPE={} AND IED.EMPID={} AND IED.SERIALNO={} AND ILA.SINAME='{}'",
      key.type, key.employee, key.serial, name);
}

// The editor's four amounts, none of them null, and their sums.
struct Amounts {
  double actualPrincipal, actualInterest, modifiedPrincipal, modifiedInterest;

  explicit Amounts(const ScheduleMonth& month)
      : actualPrincipal(month.ACTPRNAMT.value_or(0)),
        actualInterest(month.ACTINTAMT.value_or(0)),
        modifiedPrincipal(month.MDFPRNAMT.value_or(0)),
        modifiedInterest(month.MDFINTAMT.value_or(0)) {}

  double Actual() const { return actualPrincipal + actualInterest; }
  double Modified() const { return modifiedPrincipal + modifiedInterest; }
  bool operator==(const Amounts&) const = default;
};

std::string Parts(double principal, double interest, double total) {
  return fmt::format("{} + {} = {}", ShownAmount(principal), ShownAmount(interest), ShownAmount(total));
}

// ":Apr/2010 Actual ... (old), Modified ... (old)", "" for a month that stays as it is.
std::string AuditOfMonth(Session& session, const ScheduleMonth& month, const Statement& join) {
  const Recordset stored(session.Cn,
                         session.Sql("SELECT IED.ACTPRNAMT, IED.ACTINTAMT, IED.EMIAMT, IED.MDFPRNAMT, "
                                     "IED.MDFINTAMT, IED.MDFYAMT {} AND IED.MONTHYEAR={}",
                                     join, month.monthYear));
  if (stored.Eof()) return "";
  const ScheduleMonth old = ReadScheduleMonth(stored);
  const Amounts now(month), before(old);
  if (before == now) return "";
  return fmt::format(":{}:Actual = {} ({}):Modified = {} ({})", FnStrFormatMonthYear(month.monthYear),
                     Parts(now.actualPrincipal, now.actualInterest, now.Actual()),
                     Parts(before.actualPrincipal, before.actualInterest, old.EMIAMT.value_or(0)),
                     Parts(now.modifiedPrincipal, now.modifiedInterest, now.Modified()),
                     Parts(before.modifiedPrincipal, before.modifiedInterest, old.MDFYAMT.value_or(0)));
}

void WriteMonth(Session& session, const ScheduleMonth& month, const Statement& join) {
  const Amounts now(month);
  session.Cn.Execute(session.Sql(
      "UPDATE INS_EMIDETAIL SET ACTPRNAMT = {}, ACTINTAMT = {}, EMIAMT = {}, MDFPRNAMT = {}, MDFINTAMT = {}, "
      "MDFYAMT = {} {} AND IED.MONTHYEAR={}",
      now.actualPrincipal, now.actualInterest, now.Actual(), now.modifiedPrincipal, now.modifiedInterest,
      now.Modified(), join, month.monthYear));
}

}  // namespace

std::vector<ScheduleMonth> ReadInterestRows(Session& session, const InstructionKey& key,
                                            const std::string& name) {
  std::vector<ScheduleMonth> months;
  Recordset rs(session.Cn,
               session.Sql("SELECT ILA.*, IED.ACTPRNAMT AS ACTPrinciple, IED.ACTINTAMT AS ACTINTEREST, "
                           "IED.MONTHYEAR, IED.MDFPRNAMT AS MDFPrinciple, IED.MDFINTAMT AS MDFINTEREST {} "
                           "ORDER BY IED.MONTHYEAR",
                           JoinOf(session, key, name)));
  for (; !rs.Eof(); rs.MoveNext()) {
    months.push_back({.monthYear = rs["MONTHYEAR"].ToLong(),
                      .ACTPRNAMT = rs["ACTPrinciple"].NumberOr0(),
                      .ACTINTAMT = rs["ACTINTEREST"].NumberOr0(),
                      .MDFPRNAMT = rs["MDFPrinciple"].NumberOr0(),
                      .MDFINTAMT = rs["MDFINTEREST"].NumberOr0()});
  }
  return months;
}

std::optional<Refusal<NoField>> CheckInterestRows(Session& session, const InstructionKey& key,
                                                  const std::vector<ScheduleMonth>& months) {
  using Refused = Refusal<NoField>;
  const long first = months.front().monthYear;
  const long locked = CountLockedMonthsAtOnce(session, first, months.back().monthYear);
  if (locked > 0) return Refused{fmt::format("{} month(s) locked.  Cannot save.", locked)};
  if (!IsEmployeeLocked(session, key.employee, first, kNoLastMonth)) return std::nullopt;
  return Refused{.text = "Employee has been locked. Cannot Save.", .title = kDeniedTitle};
}

void WriteInterestRows(Session& session, const InstructionKey& key, const std::string& name,
                       const std::vector<ScheduleMonth>& months) {
  const Statement join = JoinOf(session, key, name);
  const bool audited = FnBlnAuditOn(session);
  std::string changes;
  double interest = 0;
  for (const ScheduleMonth& month : months) {
    if (audited) changes += AuditOfMonth(session, month, join);
    WriteMonth(session, month, join);
    RaiseFlags(session, key, month.monthYear);
    interest += month.MDFINTAMT.value_or(0);
  }
  session.Cn.Execute(session.Sql(
      "UPDATE INS_ADVLOAN SET INTAMT = {} WHERE SITYPE={} AND SERIALNO = {} AND EMPID = {} AND SINAME='{}'",
      interest, key.type, key.serial, key.employee, name));
  if (!audited) return;
  const std::string caption = InstructionCaption(session, key.type);
  AuditInstruction(session, key.employee, caption + " Interest Updated",
                   fmt::format(":::SI Type = {}:SI Name = {}:Serial No. = {}::Interest Amount "
                               "Details:Principle + Interest = EMI Amount:{}",
                               caption, name, key.serial, changes));
}

std::optional<AmountBlock> ParseAmountBlock(const std::string& text) {
  AmountBlock block;
  for (const std::string& line : Split(ReplaceAll(text, "\r", ""), "\n")) {
    if (line.empty()) continue;
    std::vector<double>& row = block.emplace_back();
    for (const std::string& cell : Split(line, "\t")) {
      const std::optional<double> amount = ParseNumber(Trim(cell));
      if (!amount || *amount < 0 || *amount > kAmountLimit) return std::nullopt;
      row.push_back(*amount);
    }
    if (row.size() != block.front().size()) return std::nullopt;
  }
  if (block.empty()) return std::nullopt;
  return block;
}

}  // namespace ktl
