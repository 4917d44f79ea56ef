#include "recovery/receipt_data.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "instructions/instruction_type.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

long CounterOf(const std::string& text) { return static_cast<long>(Val(text)); }

std::string WhereReceipt(const InstructionKey& key, const std::string& counter, const char* conjunction) {
  return fmt::format("EMPID = {1} {0} SERIALNO = {2} {0} COUNTER = {3} {0} SITYPE = {4}", conjunction,
                     key.employee, key.serial, CounterOf(counter), key.type);
}

}  // namespace

long NextReceiptCounter(Session& session, const InstructionKey& key) {
  return session.data
             .FnVarGetDbValue("Select Max(COUNTER) From INS_RECEIPTS Where " + WhereInstruction(key).text(),
                              0)
             .ToLong() +
         1;
}

long SalaryMonthOf(Session& session, std::string_view dateText) {
  const Value month = session.data.FnVarGetDbValue(
      fmt::format("SELECT MONTHYEAR FROM MAS_MONTHYEAR WHERE '{}' BETWEEN CALCSTARTDATE AND CALCENDDATE",
                  FormatDateText(dateText, "YYYY-MM-DD")),
      0);
  if (const long found = month.ToLong(); found != 0) return found;
  return clsDateHandle::FnLngFindMonthValue(FormatDateText(dateText, "MMM/YYYY"));
}

std::optional<ReceiptRefusal> CheckReceipt(Session& session, const InstructionKey& key,
                                           const ReceiptEntry& entry) {
  const std::string word(FactsOf(key.type).receiptWord);
  if (entry.counter.empty()) return ReceiptRefusal{"Select record or click 'New'.", ReceiptField::New};
  const std::optional<Date> date = ParseDate(entry.date);
  if (!date) return ReceiptRefusal{"Specify date. Format dd/mm/yyyy.", ReceiptField::Date};
  if (!FnBlnMonthAllowed(session.options.STARTMONTHYEAR, entry.date))
    return ReceiptRefusal{"Given date cannot be before the 'Start Month' set.", ReceiptField::Date};
  if (entry.amount.Now() == 0) return ReceiptRefusal{"Specify " + word + " amount.", ReceiptField::Amount};
  if (!FnBlnWithinLimit(entry.amount.text, kAmountLimit))
    return ReceiptRefusal{"Amount should be less than 9,99,99,99,999.99", ReceiptField::Amount};
  const Value given =
      session.data.FnVarGetDbValue("Select SIDATE From INS_ADVLOAN Where " + WhereInstruction(key).text());
  if (given.IsDate() && *date < given.date()) {
    return ReceiptRefusal{fmt::format("{} date cannot be before the {} given date.", word,
                                      InstructionCaption(session, key.type)),
                          ReceiptField::Date};
  }
  return std::nullopt;
}

void WriteReceipt(Session& session, const InstructionKey& key, const ReceiptEntry& entry) {
  Recordset row(session.Cn, "SELECT * From INS_RECEIPTS WHERE " + WhereReceipt(key, entry.counter, "AND"),
                OpenMode::Update);
  if (row.Eof()) {
    row.AddNew();
    row.Set("EMPID", key.employee);
    row.Set("SERIALNO", key.serial);
    row.Set("Counter", CounterOf(entry.counter));
    row.Set("SITYPE", NumberOf(key.type));
    row.Set("RCPTDATE", FormatDateText(entry.date, "dd/mmm/yyyy"));
  }
  row.Set("RCPTPRNAMT", entry.amount.Now());
  row.Set("RCPTINTAMT", entry.interest.Now());
  row.Set("RCPTAMT", entry.Total());
  row.Set("REMARKS", Trim(entry.remarks));
  row.Update();
}

void DeleteReceipt(Session& session, const InstructionKey& key, const std::string& counter) {
  session.Cn.Execute("Delete From INS_RECEIPTS Where " + WhereReceipt(key, counter, "And"));
}

}  // namespace ktl
