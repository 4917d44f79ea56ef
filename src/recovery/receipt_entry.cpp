#include "recovery/receipt_entry.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/components.h"
#include "instructions/entry_questions.h"
#include "instructions/instruction_statements.h"
#include "recovery/change_audit.h"
#include "recovery/emi_months.h"
#include "runtime/text.h"

namespace ktl {

namespace {

// The writers differ in the letters of "And".
Statement WhereReceipt(Session& session, const InstructionKey& key, long counter, const char* conjunction) {
  return session.Sql("EMPID = {1} {0} SERIALNO = {2} {0} COUNTER = {3} {0} SITYPE = {4}",
                     Statement(conjunction), key.employee, key.serial, counter, key.type);
}

long SalaryMonthOf(Session& session, const std::string& date) {
  const long month = session.data.Long(
      session.Sql("SELECT MONTHYEAR FROM MAS_MONTHYEAR WHERE '{}' BETWEEN CALCSTARTDATE AND CALCENDDATE",
                  FormatDateText(date, "YYYY-MM-DD")));
  return month != 0 ? month : clsDateHandle::FnLngFindMonthValue(FormatDateText(date, "MMM/YYYY"));
}

ReceiptDifference By(double amount, bool deleted, ReceiptDifference months) {
  months.amount = amount;
  months.blnDeleted = deleted;
  return months;
}

std::string AuditedAnswer(ReceiptDeed deed, std::optional<Answer> answer) {
  if (!answer) return "";
  if (*answer == Answer::Yes) return ":EMI Adjustment = Adjust the EMI Amount for Current and Future Months";
  if (*answer != Answer::No) return ":EMI Adjustment = Save/Update with No Adjustments";
  return deed == ReceiptDeed::Saved
             ? ":EMI Adjustment = Delete the Current and Future Months EMI Amount from Last"
             : ":EMI Adjustment = Create New Month for Recovery";
}

}  // namespace

long NextReceiptCounter(Session& session, const InstructionKey& key) {
  return session.data.Long(
             session.Sql("Select Max(COUNTER) From INS_RECEIPTS Where {}", WhereInstruction(key))) +
         1;
}

std::optional<ReceiptRefusal> CheckReceipt(Session& session, const InstructionKey& key,
                                           const ReceiptEntry& entry) {
  using enum ReceiptField;
  const std::string_view word = FactsOf(key.type).receiptWord;
  if (!entry.counter) return ReceiptRefusal{"Select record or click 'New'.", New};
  const std::optional<ktl::Date> date = ParseDate(entry.date);
  if (!date) return ReceiptRefusal{"Specify date. Format dd/mm/yyyy.", ReceiptField::Date};
  if (!FnBlnMonthAllowed(session.options.STARTMONTHYEAR, entry.date))
    return ReceiptRefusal{"Given date cannot be before the 'Start Month' set.", ReceiptField::Date};
  if (entry.amount.now == 0) return ReceiptRefusal{fmt::format("Specify {} amount.", word), Amount};
  if (entry.amount.now > kAmountLimit) return ReceiptRefusal{kAmountTooLarge, Amount};
  if (entry.interest.now > kAmountLimit) return ReceiptRefusal{kAmountTooLarge, Interest};
  const Value given =
      session.data.Guarding(session.Sql("Select SIDATE From INS_ADVLOAN Where {}", WhereInstruction(key)));
  if (given.IsDate() && *date < given.date()) {
    return ReceiptRefusal{fmt::format("{} date cannot be before the {} given date.", word,
                                      InstructionCaption(session, key.type)),
                          ReceiptField::Date};
  }
  if (AreRemarksTooLong(entry.remarks)) return ReceiptRefusal{kRemarksTooLong, Remarks};
  return std::nullopt;
}

bool ExceedsRecoverable(const InstructionTotals& totals, const ReceiptEntry& entry) {
  return totals.amount + totals.interest - totals.recovered < entry.Total();
}

ReceiptDifference MonthsOfReceipt(Session& session, const InstructionParent& parent,
                                  const std::string& date) {
  const std::vector<ScheduleMonth> schedule = ReadEmiMonths(session, parent);
  return {.lngFromMonth = SalaryMonthOf(session, date),
          .lngToMonth = schedule.empty() ? 0 : schedule.back().monthYear};
}

std::optional<ReceiptRefusal> CheckReceiptMonths(Session& session, const ReceiptDifference& months) {
  const long locked = CountLockedMonthsAtOnce(session, months.lngFromMonth, months.lngToMonth);
  if (locked == 0) return std::nullopt;
  return ReceiptRefusal{LockedMonthsText(locked), ReceiptField::Amount, Icon::Exclamation};
}

void WriteReceipt(Session& session, const InstructionKey& key, const ReceiptEntry& entry) {
  Recordset row(
      session.Cn,
      session.Sql("SELECT * From INS_RECEIPTS WHERE {}", WhereReceipt(session, key, *entry.counter, "AND")),
      OpenMode::Update);
  if (row.Eof()) {
    row.AddNew();
    row.Set("EMPID", key.employee);
    row.Set("SERIALNO", key.serial);
    row.Set("Counter", *entry.counter);
    row.Set("SITYPE", NumberOf(key.type));
    row.Set("RCPTDATE", FormatDateText(entry.date, "dd/mmm/yyyy"));
  }
  row.Set("RCPTPRNAMT", entry.amount.now);
  row.Set("RCPTINTAMT", entry.interest.now);
  row.Set("RCPTAMT", entry.Total());
  row.Set("REMARKS", Trim(entry.remarks));
  row.Update();
}

void DeleteReceipt(Session& session, const InstructionKey& key, long counter) {
  session.Cn.Execute(
      session.Sql("Delete From INS_RECEIPTS Where {}", WhereReceipt(session, key, counter, "And")));
}

void AdjustSavedReceipt(Session& session, InstructionParent& parent, Answer answer, const ReceiptEntry& entry,
                        const ReceiptDifference& months) {
  if (answer == Answer::Cancel) return;
  const bool spread = answer == Answer::Yes;
  const ReceiptDifference amount = By(entry.amount.now - entry.amount.before, false, months);
  if (parent.ComponentsApart()) {
    StoreComponents(session, parent.Key());
    const ReceiptDifference interest = By(entry.interest.now - entry.interest.before, false, months);
    (spread ? RedPrinciModify : RedPrinciModifyLastMonth)(session, parent, amount);
    (spread ? RedIntModify : RedIntModifyLastMonth)(session, parent, interest);
  } else {
    (spread ? EMIModify : EMIModifyLastMonth)(session, parent, amount);
  }
}

void AdjustDeletedReceipt(Session& session, InstructionParent& parent, Answer answer,
                          const ReceiptEntry& entry, const ReceiptDifference& months) {
  const double amount = entry.amount.now, interest = entry.interest.now;
  if (answer == Answer::Cancel) return;
  const bool reducing = parent.ComponentsApart();
  if (reducing) StoreComponents(session, parent.Key());
  if (answer == Answer::Yes && reducing) {
    RedPrinciModify(session, parent, By(amount, true, months));
    RedIntModify(session, parent, By(interest, true, months));
  } else if (answer == Answer::Yes) {
    EMIModify(session, parent, By(amount, true, months));
  } else if (reducing) {
    AddRecoveryMonthRed(session, parent, amount, interest);
  } else {
    AddRecoveryMonth(session, parent, amount);
  }
}

void AuditReceipt(Session& session, const InstructionKey& key, bool reducing, ReceiptDeed deed,
                  const ReceiptEntry& entry, std::optional<Answer> answer) {
  if (!FnBlnAuditOn(session)) return;
  const std::string amounts =
      reducing ? AuditedComponents(entry.amount.text, entry.interest.text, AuditedSum(entry.Total()))
               : fmt::format("::EMI Amount = {}{}", entry.amount.text, AuditedAnswer(deed, answer));
  AuditChange(session, key, InstructionCaption(session, key.type),
              deed == ReceiptDeed::Saved ? " Receipts Updated" : " Receipts Deleted",
              fmt::format("::Receipt Date = {}{}:Remarks = {}", FormatDateText(entry.date, "dd/mmm/yyyy"),
                          amounts, Trim(entry.remarks)));
}

}  // namespace ktl
