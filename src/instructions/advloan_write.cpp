#include "instructions/advloan_write.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr long kMenuNumber = 19;
constexpr const char* kLoanNumbersMarker = "BrookfieldFarmCustom.dat";

// The row's columns in their order, and the audit text that grows with them.
std::string StoreInstruction(Recordset& row, const AdvLoanEntry& entry) {
  std::string audit = fmt::format("SI Type = {}", FactsOf(entry.key.type).word);
  const auto assign = [&](const char* column, Value value, const char* label, const std::string& shown) {
    row.Set(column, std::move(value));
    if (label != nullptr) audit += fmt::format(":{} = {}", label, shown);
  };
  const std::string name = Trim(entry.name);
  const std::string account = Trim(entry.account);
  const std::string date = FormatDateText(entry.date, "dd/mmm/yyyy");
  const std::string remarks = Trim(entry.remarks);
  assign("EMPID", entry.key.employee, nullptr, "");
  assign("SERIALNO", entry.key.serial, nullptr, "");
  assign("SITYPE", NumberOf(entry.key.type), nullptr, "");
  assign("SINAME", name, "SI Name", name);
  assign("LOANACNO", account, entry.key.type == InstructionType::Loan ? "A/c No." : nullptr, account);
  assign("SIDATE", date, "Date", date);
  assign("ACTAMT", entry.Amount(), "Amount", NumberText(entry.Amount()));
  assign("INTAMT", entry.Interest(), "Interest Amount", NumberText(entry.Interest()));
  assign("REMARKS", remarks, "Remarks", remarks);
  row.Update();
  row.Close();
  return audit;
}

ScheduleTerms TermsOf(const Session& session, const AdvLoanEntry& entry) {
  ScheduleTerms terms;
  terms.total = entry.Amount() + entry.Interest();
  terms.firstMonth = entry.RecoverFromMonth();
  if (entry.lumpSum) {
    terms.instalment = entry.Instalment();
  } else {
    terms.count = clsGenCmn::FnDblTrimVal(entry.count);
    terms.rounding = entry.rounding;
  }
  if (session.AdvanceMgmtYN && entry.rules.REDUCINGBALYN) terms.reducingRate = entry.rules.INTRRATE;
  return terms;
}

std::string RecoveryAuditText(const AdvLoanEntry& entry) {
  if (entry.noRecovery) return ":No Recovery = Yes";
  return fmt::format(":Recover From Month = {}:{} = {}", entry.recoverFrom,
                     entry.lumpSum ? "Installments Amount" : "No. of Installments",
                     entry.lumpSum ? entry.instalment : entry.count);
}

// The row of a deleted loan stays, so its number is never given again by a delete.
void GiveLoanNumber(Session& session, const InstructionKey& key) {
  session.Cn.Execute(fmt::format("DELETE FROM CUS_LOANSLNOTABLE WHERE EMPID = {} AND SERIALNO = {}",
                                 key.employee, key.serial));
  const long next =
      session.data.FnVarGetDbValue("SELECT ISNULL(MAX(AUTOSLNO),0) + 1 FROM CUS_LOANSLNOTABLE", 0).ToLong();
  session.Cn.Execute(
      fmt::format("INSERT INTO CUS_LOANSLNOTABLE (EMPID, SERIALNO, AUTOSLNO) VALUES({}, {}, {})",
                  key.employee, key.serial, next));
}

void Audit(Session& session, const InstructionKey& key, std::string_view what, const std::string& detail) {
  if (!FnBlnAuditOn(session)) return;
  const std::string done = fmt::format("{} {}", FactsOf(key.type).word, what);
  WriteAuditTrail(session, kMenuNumber, key.employee, "Standing Instructions - " + done,
                  done + "::" + detail);
}

// The salary's view of the months must not keep an instalment that is about to go.
void ZeroInstalments(Session& session, const InstructionKey& key) {
  const std::vector<long> months = ReadScheduleMonths(session, key);
  if (months.empty()) return;
  session.Cn.Execute(
      fmt::format("Update INS_EMIDETAIL Set EMIAMT = 0 Where {} And MONTHYEAR Between {} And {}",
                  WhereInstruction(key).text(), months.front(), months.back()));
}

void DeleteRows(Session& session, const char* table, const InstructionKey& key) {
  session.Cn.Execute(fmt::format("Delete From {} Where  {}", table, WhereInstruction(key).text()));
}

}  // namespace

bool WriteAdvLoan(Session& session, const AdvLoanEntry& entry) {
  if (entry.Amount() <= 0) return false;
  Recordset row(session.Cn, "Select * From INS_ADVLOAN Where " + WhereInstruction(entry.key).text(),
                OpenMode::Update);
  const bool isNew = row.Eof();
  if (isNew) row.AddNew();
  const std::string audit = StoreInstruction(row, entry);
  if (isNew && !entry.noRecovery) {
    const long lender = static_cast<long>(Val(entry.institution));
    WriteSchedule(session, entry.key, TermsOf(session, entry), lender, ScheduleForm::Screen);
  }
  // "Added" stands for a change of an existing row too.
  Audit(session, entry.key, "Added", audit + RecoveryAuditText(entry));
  RaiseEditMode(session, entry.key.employee, MonthsOfInstruction(entry.key),
                AttendanceWording::EmployeeFirst);
  if (isNew && entry.key.type == InstructionType::Loan &&
      session.machine.folder.HasFile(kLoanNumbersMarker)) {
    GiveLoanNumber(session, entry.key);
  }
  return true;
}

std::vector<long> ReadScheduleMonths(Session& session, const InstructionKey& key) {
  std::vector<long> months;
  Recordset rs(session.Cn, "Select MONTHYEAR From INS_EMIDETAIL Where " + WhereInstruction(key).text() +
                               " ORDER BY MONTHYEAR");
  for (; !rs.Eof(); rs.MoveNext()) months.push_back(rs[0].ToLong());
  return months;
}

void DeleteAdvLoan(Session& session, const InstructionKey& key, const AdvLoanDetail& detail,
                   bool withHouseLoan) {
  ZeroInstalments(session, key);
  // The list of months comes from the schedule, so the flags go before the deletes.
  RaiseEditMode(session, key.employee, MonthsOfInstruction(key), AttendanceWording::LockFirst);
  if (withHouseLoan) {
    DeleteRows(session, "INS_HLOAN_VAL", key);
    DeleteRows(session, "INS_HLOAN", key);
  }
  DeleteRows(session, "INS_RECEIPTS", key);
  DeleteRows(session, "INS_EMIDETAIL", key);
  DeleteRows(session, "INS_ADVLOAN", key);

  std::string audit = fmt::format("SI Type = {}:SI Name = {}", FactsOf(key.type).word, detail.name);
  if (key.type == InstructionType::Loan) audit += ":A/c No. = " + detail.account;
  audit += fmt::format(":Date = {}:Amount = {}:Interest Amount = {}:Remarks = {}",
                       detail.date.IsDate() ? FormatDate(detail.date.date(), "dd/mm/yyyy") : "",
                       NumberText(detail.amount), NumberText(detail.interest), detail.remarks);
  Audit(session, key, "Deleted", audit);
}

void DeleteInstalment(Session& session, const InstructionKey& key, const InstalmentToDelete& instalment) {
  const std::string thisMonth =
      fmt::format("{} And COUNTER = {}", WhereInstruction(key).text(), instalment.counter);
  RaiseEditMode(session, key.employee,
                Statement("IN (Select MONTHYEAR From INS_EMIDETAIL Where " + thisMonth + ")"),
                AttendanceWording::LockFirst);
  session.Cn.Execute("Delete From INS_EMIDETAIL Where " + thisMonth);
}

void SpreadDeleted(Session& session, const InstructionKey& key, const std::vector<OpenMonth>& open,
                   double deleted) {
  for (const OpenMonth& month : SpreadOver(open, deleted)) {
    session.Cn.Execute(
        fmt::format("Update INS_EMIDETAIL SET MDFYAMT = {} Where EMPID={} AND SITYPE={} AND MONTHYEAR={} AND "
                    "SERIALNO = {}",
                    SqlAmount(month.modifiedAmount), key.employee, key.type, month.monthYear, key.serial));
  }
}

void AuditDeletedInstalments(Session& session, const InstructionKey& key, std::string_view name,
                             const std::vector<InstalmentToDelete>& deleted, std::string_view adjustment) {
  std::string audit = fmt::format(":SI Type = {}:SI Name = {}", FactsOf(key.type).word, name);
  for (const InstalmentToDelete& instalment : deleted) {
    audit += fmt::format("::Month/Year = {}:EMI Amount = {}", FnStrFormatMonthYear(instalment.monthYear),
                         instalment.amount);
  }
  Audit(session, key, "EMI's Deleted", audit.append(adjustment));
}

std::string_view AuditTextOf(DeletedInstalments choice) {
  switch (choice) {
    case DeletedInstalments::SpreadOverOthers:
      return ":Adjustment Option Selected = Adjust the EMI Amount for the Months";
    case DeletedInstalments::NewMonth:
      return ":Adjustment Option Selected = Create New Month for Recovery";
    case DeletedInstalments::NoAdjustment:
      break;
  }
  return ":Adjustment Option Selected = Delete with No Adjustments";
}

void LowerTotalInterest(Session& session, const InstructionKey& key, std::string_view name, double interest) {
  session.Cn.Execute(
      fmt::format("UPDATE INS_ADVLOAN SET INTAMT = (INTAMT - {}) WHERE SITYPE={} AND SERIALNO = {} AND "
                  "EMPID = {} AND SINAME='{}'",
                  SqlAmount(interest), key.type, key.serial, key.employee, SqlText(session, name)));
}

void MarkRecovered(Session& session, const InstructionKey& key, long counter, bool recovered) {
  session.Cn.Execute(fmt::format("Update INS_EMIDETAIL SET EMIRECVYN={} Where {} And COUNTER = {}",
                                 recovered ? 1 : 0, WhereInstruction(key).text(), counter));
}

}  // namespace ktl
