#include "recovery/emi_months.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "database/recordset.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "instructions/instruction_type.h"
#include "instructions/modAdvLoan.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr const char* kColumns =
    "EMI.COUNTER, EMI.MONTHYEAR, EMI.EMIAMT, EMI.ACTPRNAMT, EMI.ACTINTAMT, EMI.MDFPRNAMT, EMI.MDFINTAMT, "
    "EMI.MDFYAMT";

std::string ListStatement(const InstructionKey& key) {
  const std::string where = fmt::format("Where EMI.EMPID = {} And EMI.SERIALNO = {} And EMI.SITYPE = {}",
                                        key.employee, key.serial, key.siType);
  if (!HasInstitution(key.siType)) {
    return fmt::format(
        "Select {}, '' As INSTNAME, EMI.REMARKS From INS_EMIDETAIL EMI {} Order By EMI.MONTHYEAR", kColumns,
        where);
  }
  return fmt::format(
      "Select {}, INST.INSTNAME, EMI.REMARKS From INS_EMIDETAIL EMI, MAS_INSTITUTION INST {} And EMI.INSTID "
      "= "
      "INST.INSTID And INST.TYPEID = {} Order By EMI.MONTHYEAR",
      kColumns, where, key.siType);
}

// Row for row: both lists hold the same months.
void MarkRecovered(std::vector<EmiMonth>& months, const Grid& parentList) {
  for (std::size_t row = 0; row < months.size() && row < parentList.rows.size(); ++row) {
    months[row].recovered = parentList.IsTicked(row, modAdvLoan::kEmiRecovered);
  }
}

}  // namespace

double EmiMonth::Of(Component component) const {
  switch (component) {
    case Component::Principal:
      return MDFPRNAMT.NumberOr0();
    case Component::Interest:
      return MDFINTAMT.NumberOr0();
    case Component::Amount:
      break;
  }
  return MDFYAMT.NumberOr0();
}

std::vector<EmiMonth> ReadEmiMonths(Session& session, InstructionParent& parent) {
  const InstructionKey key = parent.Key();
  std::vector<EmiMonth> months;
  for (Recordset rs(session.Cn, ListStatement(key)); !rs.Eof(); rs.MoveNext()) {
    months.push_back({.counter = rs["COUNTER"].ToLong(),
                      .monthYear = rs["MONTHYEAR"].ToLong(),
                      .ACTPRNAMT = rs["ACTPRNAMT"],
                      .ACTINTAMT = rs["ACTINTAMT"],
                      .EMIAMT = rs["EMIAMT"],
                      .MDFPRNAMT = rs["MDFPRNAMT"],
                      .MDFINTAMT = rs["MDFINTAMT"],
                      .MDFYAMT = rs["MDFYAMT"],
                      .institution = rs["INSTNAME"].TextOrEmpty(),
                      .remarks = rs["REMARKS"].TextOrEmpty()});
  }
  if (IsAdvanceOrLoan(key.siType)) MarkRecovered(months, parent.EmiGrid());
  return months;
}

std::vector<AdjustableMonth> AdjustableMonths(const std::vector<EmiMonth>& months, Component component) {
  std::vector<AdjustableMonth> adjustable;
  adjustable.reserve(months.size());
  for (const EmiMonth& month : months) {
    adjustable.push_back(
        {month.monthYear, month.Of(component), month.Of(Component::Principal), month.recovered});
  }
  return adjustable;
}

OverviewAmounts ReadOverview(InstructionParent& parent) {
  const Grid& list = parent.OverviewGrid();
  const std::string serial = std::to_string(parent.Key().serial);
  for (std::size_t row = 0; row < list.rows.size(); ++row) {
    if (list.Text(row, modAdvLoan::kListSerial) != serial) continue;
    const auto amount = [&](std::size_t column) { return clsGenCmn::FnDblTrimVal(list.Text(row, column)); };
    return {amount(modAdvLoan::kListAmount), amount(modAdvLoan::kListInterest), amount(modAdvLoan::kListEmi),
            amount(modAdvLoan::kListRecovered), amount(modAdvLoan::kListReceipts)};
  }
  return {};
}

std::string ReadInstructionName(Session& session, const InstructionKey& key) {
  const char* query = IsAdvanceOrLoan(key.siType) ? "Select SINAME From INS_ADVLOAN Where "
                                                  : "Select OTHNAME From INS_OTHER Where ";
  return session.data.FnVarGetDbValue(query + WhereInstruction(key), "").ToText();
}

long CountLockedMonths(Session& session, long firstMonth, long lastMonth) {
  long count = 0;
  for (long month = firstMonth; month <= lastMonth; ++month) count += IsMonthLocked(session, month) ? 1 : 0;
  return count;
}

long CountLockedMonthsAtOnce(Session& session, long firstMonth, long lastMonth) {
  return session.data
      .FnVarGetDbValue(fmt::format("Select Count(MONTHYEAR) From MAS_MONTHYEAR Where LOCKEDYN = 1 And "
                                   "MONTHYEAR >= {} AND MONTHYEAR <= {}",
                                   firstMonth, lastMonth),
                       0)
      .ToLong();
}

std::string LockedMonthsText(long count) {
  return fmt::format("{} Month(s) locked. Cannot save.\r\nUnlock months to save data.", count);
}

}  // namespace ktl
