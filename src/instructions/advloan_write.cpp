#include "instructions/advloan_write.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/house_loan.h"
#include "instructions/instruction_statements.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr const char* kLoanNumbersMarker = "BrookfieldFarmCustom.dat";

// "Advance" or "Loan", whatever the company calls the type.
std::string_view WordOf(const InstructionKey& key) { return FactsOf(key.type).word; }

std::string TypeAndName(const InstructionKey& key, std::string_view name) {
  return fmt::format(":SI Type = {}:SI Name = {}", WordOf(key), name);
}

std::string AccountText(const InstructionKey& key, const std::string& account) {
  return key.type == InstructionType::Loan ? ":A/c No. = " + account : "";
}

std::string AmountsText(const std::string& date, double amount, double interest) {
  return fmt::format(":Date = {}:Amount = {}:Interest Amount = {}", date, NumberText(amount),
                     NumberText(interest));
}

std::string RemarksText(const std::string& remarks) { return ":Remarks = " + remarks; }

std::string RecoveryText(const AdvLoanEntry& entry) {
  if (entry.noRecovery) return ":No Recovery = Yes";
  return fmt::format(":Recover From Month = {}:{} = {}", entry.typed.recoverFrom,
                     entry.lumpSum ? "Installments Amount" : "No. of Installments",
                     entry.lumpSum ? entry.typed.instalment : entry.typed.count);
}

std::string AmountsText(const AdvLoanEntry& entry) {
  return AmountsText(clsDateHandle::FnStrInDateDTM(*entry.date), entry.amount, entry.interest);
}

void Audit(Session& session, const InstructionKey& key, std::string_view what, const std::string& detail) {
  AuditInstruction(session, key.employee, fmt::format("{} {}", WordOf(key), what), detail);
}

std::string EntryAuditText(const AdvLoanEntry& entry) {
  return ":" + TypeAndName(entry.key, entry.name) + AccountText(entry.key, entry.account) +
         AmountsText(entry) + RemarksText(entry.remarks) + RecoveryText(entry);
}

std::string AllotmentAuditText(const AdvLoanEntry& entry) {
  return ":" + TypeAndName(entry.key, entry.name) + AmountsText(entry) + RecoveryText(entry) +
         RemarksText(entry.remarks);
}

// True for a new row.
bool StoreInstruction(Session& session, const AdvLoanEntry& entry) {
  Recordset row(session.Cn, session.Sql("Select * From INS_ADVLOAN Where {}", WhereInstruction(entry.key)),
                OpenMode::Update);
  const bool isNew = row.Eof();
  if (isNew) row.AddNew();
  row.Set("EMPID", entry.key.employee);
  row.Set("SERIALNO", entry.key.serial);
  row.Set("SITYPE", NumberOf(entry.key.type));
  row.Set("SINAME", entry.name);
  row.Set("LOANACNO", entry.account);
  row.Set("SIDATE", clsDateHandle::FnStrInDateDTM(*entry.date));
  row.Set("ACTAMT", entry.amount);
  row.Set("INTAMT", entry.interest);
  row.Set("REMARKS", entry.remarks);
  row.Update();
  return isNew;
}

// The row of a deleted loan stays, so its number is never given again by a delete.
void GiveLoanNumber(Session& session, const InstructionKey& key) {
  session.Cn.Execute(session.Sql("DELETE FROM CUS_LOANSLNOTABLE WHERE EMPID = {} AND SERIALNO = {}",
                                 key.employee, key.serial));
  const long next = session.data.Long("SELECT ISNULL(MAX(AUTOSLNO),0) + 1 FROM CUS_LOANSLNOTABLE");
  session.Cn.Execute(
      session.Sql("INSERT INTO CUS_LOANSLNOTABLE (EMPID, SERIALNO, AUTOSLNO) VALUES({}, {}, {})",
                  key.employee, key.serial, next));
}

// The salary's view of the months must not keep an instalment that is about to go.
void ZeroInstalments(Session& session, const InstructionKey& key) {
  const std::vector<long> months = ReadScheduleMonths(session, key);
  if (months.empty()) return;
  session.Cn.Execute(
      session.Sql("Update INS_EMIDETAIL Set EMIAMT = 0 Where {} And MONTHYEAR Between {} And {}",
                  WhereInstruction(key), months.front(), months.back()));
}

// In the order of DeletedInstalments.
constexpr const char* kAuditOfChoice[] = {
    "", ":Adjustment Option Selected = Adjust the EMI Amount for the Months",
    ":Adjustment Option Selected = Create New Month for Recovery",
    ":Adjustment Option Selected = Delete with No Adjustments"};

}  // namespace

bool WriteAdvLoan(Session& session, const AdvLoanEntry& entry) {
  if (entry.amount <= 0) return false;
  const InstructionKey& key = entry.key;
  const bool isNew = StoreInstruction(session, entry);
  if (isNew && !entry.noRecovery) {
    WriteSchedule(session, key, entry.Terms(session.AdvanceMgmtYN), entry.institution.value_or(0),
                  ScheduleForm::Screen);
  }
  // "Added" stands for a change of an existing row too.
  Audit(session, key, "Added", EntryAuditText(entry));
  RaiseEditMode(session, key.employee, MonthsOfInstruction(key), AttendanceWording::EmployeeFirst);
  if (isNew && key.type == InstructionType::Loan && session.machine.folder.HasFile(kLoanNumbersMarker))
    GiveLoanNumber(session, key);
  return true;
}

void WriteAllotted(Session& session, const AdvLoanEntry& entry) {
  const InstructionKey& key = entry.key;
  if (StoreInstruction(session, entry) && !entry.noRecovery) {
    // A reducing name gets flat months here.
    WriteSchedule(session, key, entry.Terms(false), entry.institution.value_or(0), ScheduleForm::Batch);
  }
  RaiseEditMode(session, key.employee, MonthsOfInstruction(key), AttendanceWording::EmployeeFirst);
  Audit(session, key, "Added", AllotmentAuditText(entry));
}

void TakeAway(Session& session, const InstructionKey& key, bool withHouseLoan) {
  RaiseEditMode(session, key.employee, MonthsOfInstruction(key), AttendanceWording::LockFirst);
  if (withHouseLoan) DeleteHouseLoan(session, key);
  DeleteRows(session, "INS_RECEIPTS", key);
  DeleteRows(session, "INS_EMIDETAIL", key);
  DeleteRows(session, "INS_ADVLOAN", key);
}

void DeleteAdvLoan(Session& session, const InstructionKey& key, const AdvLoanDetail& detail,
                   bool withHouseLoan) {
  ZeroInstalments(session, key);
  TakeAway(session, key, withHouseLoan);
  const std::string date = detail.date ? FormatDate(*detail.date, "dd/mm/yyyy") : "";
  Audit(session, key, "Deleted",
        ":" + TypeAndName(key, detail.name) + AccountText(key, detail.account) +
            AmountsText(date, detail.amount, detail.interest) + RemarksText(detail.remarks));
}

void DeleteInstalment(Session& session, const InstructionKey& key, long counter) {
  const Statement where = WhereInstruction(key);
  RaiseEditMode(
      session, key.employee,
      session.Sql("IN (Select MONTHYEAR From INS_EMIDETAIL Where {} And COUNTER = {})", where, counter),
      AttendanceWording::LockFirst);
  session.Cn.Execute(session.Sql("Delete From INS_EMIDETAIL Where {} And COUNTER = {}", where, counter));
}

void SpreadDeleted(Session& session, const InstructionKey& key, const std::vector<OpenMonth>& open,
                   double deleted) {
  for (const OpenMonth& month : SpreadOver(open, deleted)) {
    session.Cn.Execute(
        session.Sql("Update INS_EMIDETAIL SET MDFYAMT = {} Where EMPID={} AND SITYPE={} AND MONTHYEAR={} AND "
                    "SERIALNO = {}",
                    month.modifiedAmount, key.employee, key.type, month.monthYear, key.serial));
  }
}

void AuditDeletedInstalments(Session& session, const InstructionKey& key, std::string_view name,
                             const std::vector<ScheduleMonth>& deleted, DeletedInstalments choice) {
  std::string detail = "::" + TypeAndName(key, name);
  for (const ScheduleMonth& month : deleted) {
    detail += fmt::format("::Month/Year = {}:EMI Amount = {}", FnStrFormatMonthYear(month.monthYear),
                          ShownAmount(month.MDFYAMT));
  }
  Audit(session, key, "EMI's Deleted", detail.append(kAuditOfChoice[static_cast<std::size_t>(choice)]));
}

void LowerTotalInterest(Session& session, const InstructionKey& key, std::string_view name, double interest) {
  session.Cn.Execute(
      session.Sql("UPDATE INS_ADVLOAN SET INTAMT = (INTAMT - {}) WHERE SITYPE={} AND SERIALNO = {} AND "
                  "EMPID = {} AND SINAME='{}'",
                  interest, key.type, key.serial, key.employee, name));
}

void MarkRecovered(Session& session, const InstructionKey& key, long counter, bool recovered) {
  session.Cn.Execute(session.Sql("Update INS_EMIDETAIL SET EMIRECVYN={} Where {} And COUNTER = {}",
                                 recovered ? 1 : 0, WhereInstruction(key), counter));
}

}  // namespace ktl
