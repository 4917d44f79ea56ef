#include "premium/premium_write.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/ported_stat.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "premium/premium_data.h"
#include "premium/premium_type.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

void Audit(Session& session, const InstructionKey& key, const std::string& caption, std::string_view deed,
           const std::string& detail) {
  if (!FnBlnAuditOn(session)) return;
  WriteAuditTrail(session, kInstructionsMenu, key.employee,
                  fmt::format("Standing Instructions - {} {}", caption, deed), "::" + detail);
}

std::string YesNo(bool on) { return on ? "Yes" : "No"; }

// Builds an audit text label by label. What an existing row held before is told where it differs.
class AuditedPremium final {
 public:
  explicit AuditedPremium(const std::string& caption) { Add("SI Type", caption); }

  void Add(std::string_view label, std::string_view text) { text_ += fmt::format(":{} = {}", label, text); }
  template <typename Text>
  void Add(std::string_view label, const PremiumRow& now, const std::optional<PremiumRow>& before,
           Text&& textOf) {
    const std::string text = textOf(now);
    Add(label, text);
    if (!before) return;
    if (const std::string old = textOf(*before); old != text) text_ += " (" + old + ")";
  }
  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

void AddShare(AuditedPremium& audited, const char* fund, const PremiumRow& now,
              const std::optional<PremiumRow>& before, std::optional<FundShare> PremiumRow::*share) {
  const auto shareOf = [share](const PremiumRow& row) { return (row.*share).value_or(FundShare{}); };
  audited.Add(fmt::format("{} Enabled", fund), now, before,
              [&](const PremiumRow& row) { return YesNo(shareOf(row).counts); });
  audited.Add(fmt::format("{} Percentage", fund), now, before,
              [&](const PremiumRow& row) { return NumberText(shareOf(row).percent); });
}

void AddIncentive(AuditedPremium& audited, const PremiumRow& now, const std::optional<PremiumRow>& before) {
  AddShare(audited, "PF", now, before, &PremiumRow::pf);
  AddShare(audited, "ESI", now, before, &PremiumRow::esi);
  audited.Add("PT Enabled", now, before, [](const PremiumRow& row) { return YesNo(row.pt); });
}

void AddNameAndMonths(AuditedPremium& audited, const PremiumRow& now, const std::optional<PremiumRow>& before,
                      bool numbered) {
  audited.Add("SI Name", now, before, [](const PremiumRow& row) { return row.name; });
  if (numbered) audited.Add("Policy Number", now, before, [](const PremiumRow& row) { return row.number; });
  audited.Add("Start Month", now, before,
              [](const PremiumRow& row) { return FnStrFormatMonthYear(row.firstMonth); });
  audited.Add("End Month", now, before,
              [](const PremiumRow& row) { return FnStrFormatMonthYear(row.lastMonth); });
}

std::string EntryAuditText(const PremiumEntry& entry, const PremiumRow& now,
                           const std::optional<PremiumRow>& before) {
  const bool incentive = entry.key.type == InstructionType::Incentive;
  AuditedPremium audited(entry.caption);
  AddNameAndMonths(audited, now, before, !incentive);
  if (!before) {
    audited.Add("Amount/Month", ShownAmount(entry.amount));
    if (!incentive) audited.Add("Institution", entry.typed.institution);
  }
  audited.Add("Remarks", now, before, [](const PremiumRow& row) { return row.remarks; });
  if (incentive) AddIncentive(audited, now, before);
  return audited.text();
}

// Of a row that is about to go, with every label; the amount and the institution are those of its first
// month.
std::string DeletedAuditText(Session& session, const InstructionKey& key, const std::string& caption) {
  if (!FnBlnAuditOn(session)) return "";
  const PremiumRow premium = ReadPremium(session, key).value_or(PremiumRow{});
  const std::vector<ScheduleMonth> schedule = ReadPremiumSchedule(session, key);
  AuditedPremium audited(caption);
  AddNameAndMonths(audited, premium, {}, true);
  audited.Add("Amount/Month", schedule.empty() ? "" : ShownAmount(schedule.front().EMIAMT));
  audited.Add("Institution", schedule.empty() ? "" : schedule.front().institution);
  audited.Add("Remarks", premium.remarks);
  AddIncentive(audited, premium, {});
  return audited.text();
}

void DeleteMonth(Session& session, const InstructionKey& key, long counter) {
  const Statement where = session.Sql("{} And COUNTER = {}", WhereInstruction(key), counter);
  RaiseEditMode(session, key.employee, session.Sql("= (Select MONTHYEAR From INS_EMIDETAIL Where {})", where),
                AttendanceWording::EmployeeFirst);
  session.Cn.Execute(session.Sql("Delete From INS_EMIDETAIL Where {}", where));
}

}  // namespace

void MarkTaxFlags(Session& session, const InstructionKey& key, long firstMonth, long lastMonth) {
  UpdateIncPortedStat(session, PremiumFactsOf(key.type).portCode, key.employee, firstMonth, "", lastMonth,
                      fmt::format(" EMPID = {}", key.employee));
}

void WritePremium(Session& session, const PremiumEntry& entry) {
  PremiumRow row = entry.row;
  row.name = NameAsListed(session, entry.key.type, row.name);
  const std::optional<PremiumRow> before = ReadPremium(session, entry.key);
  if (StorePremium(session, entry.key, row))
    WritePremiumSchedule(session, entry.key, entry.Terms(), entry.institution.value_or(0));
  Audit(session, entry.key, entry.caption, "Created/Updated", EntryAuditText(entry, row, before));
  RaiseEditMode(session, entry.key.employee, MonthsOfInstruction(entry.key),
                AttendanceWording::EmployeeFirst);
}

void DeletePremium(Session& session, const InstructionKey& key, const std::string& caption) {
  const std::string detail = DeletedAuditText(session, key, caption);
  const std::vector<long> months = ReadScheduleMonths(session, key);
  if (!months.empty()) {
    session.Cn.Execute(
        session.Sql("Update INS_EMIDETAIL Set EMIAMT = 0 Where EMPID = {} And SERIALNO = {} And MONTHYEAR "
                    "Between {} And {} And SITYPE = {}",
                    key.employee, key.serial, months.front(), months.back(), key.type));
  }
  RaiseEditMode(session, key.employee, MonthsOfInstruction(key), AttendanceWording::EmployeeFirst);
  for (const char* table : {"INS_EMIDETAIL", "INS_OTHER"})
    session.Cn.Execute(session.Sql("Delete From {} Where {}", Statement(table), WhereInstruction(key)));
  if (!months.empty()) MarkTaxFlags(session, key, months.front(), months.back());
  Audit(session, key, caption, "Deleted", detail);
}

DeletedMonths DeletePremiumMonths(Session& session, const InstructionKey& key, const std::string& caption,
                                  const std::vector<ScheduleMonth>& months) {
  DeletedMonths outcome;
  std::string deleted;
  for (const ScheduleMonth& month : months) {
    if (IsMonthLocked(session, month.monthYear)) {
      outcome.locked += (outcome.locked.empty() ? "" : ", ") + FnStrFormatMonthYear(month.monthYear);
      continue;
    }
    outcome.employeeLocked =
        IsEmployeeLocked(session, key.employee, month.monthYear, std::to_string(month.monthYear));
    if (outcome.employeeLocked) break;
    DeleteMonth(session, key, month.counter);
    deleted += fmt::format("::Month/Year = {}:EMI Amount = {}", FnStrFormatMonthYear(month.monthYear),
                           ShownAmount(month.MDFYAMT));
  }
  if (!deleted.empty()) {
    Audit(session, key, caption, "EMI's Deleted",
          fmt::format(":SI Type = {}:Serial No. = {}{}", caption, key.serial, deleted));
  }
  return outcome;
}

}  // namespace ktl
