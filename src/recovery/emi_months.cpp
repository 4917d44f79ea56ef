#include "recovery/emi_months.h"

#include <fmt/format.h>

#include "database/recordset.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "instructions/instruction_type.h"

namespace ktl {

namespace {

constexpr const char* kColumns =
    "EMI.COUNTER, EMI.MONTHYEAR, EMI.EMIAMT, EMI.ACTPRNAMT, EMI.ACTINTAMT, EMI.MDFPRNAMT, EMI.MDFINTAMT, "
    "EMI.MDFYAMT";

std::string ListStatement(const InstructionKey& key) {
  const std::string where = fmt::format("Where EMI.EMPID = {} And EMI.SERIALNO = {} And EMI.SITYPE = {}",
                                        key.employee, key.serial, key.type);
  if (!HasInstitution(key.type)) {
    return fmt::format(
        "Select {}, '' As INSTNAME, EMI.REMARKS From INS_EMIDETAIL EMI {} Order By EMI.MONTHYEAR", kColumns,
        where);
  }
  return fmt::format(
      "Select {}, INST.INSTNAME, EMI.REMARKS From INS_EMIDETAIL EMI, MAS_INSTITUTION INST {} And EMI.INSTID "
      "= "
      "INST.INSTID And INST.TYPEID = {} Order By EMI.MONTHYEAR",
      kColumns, where, key.type);
}

}  // namespace

double AmountOf(const ScheduleMonth& month, Component component) {
  switch (component) {
    case Component::Principal:
      return month.MDFPRNAMT.value_or(0);
    case Component::Interest:
      return month.MDFINTAMT.value_or(0);
    case Component::Amount:
      break;
  }
  return month.MDFYAMT.value_or(0);
}

std::vector<ScheduleMonth> ReadEmiMonths(Session& session, InstructionParent& parent) {
  const InstructionKey key = parent.Key();
  const std::set<long> recovered = IsAdvanceOrLoan(key.type) ? parent.RecoveredMonths() : std::set<long>();
  std::vector<ScheduleMonth> months;
  for (Recordset rs(session.Cn, ListStatement(key)); !rs.Eof(); rs.MoveNext()) {
    ScheduleMonth& month = months.emplace_back(ReadScheduleMonth(rs));
    month.markedRecovered = recovered.contains(month.monthYear);
  }
  return months;
}

std::vector<AdjustableMonth> AdjustableMonths(const std::vector<ScheduleMonth>& months, Component component) {
  std::vector<AdjustableMonth> adjustable;
  adjustable.reserve(months.size());
  for (const ScheduleMonth& month : months) {
    adjustable.push_back({month.monthYear, AmountOf(month, component), AmountOf(month, Component::Principal),
                          month.IsRecovered()});
  }
  return adjustable;
}

std::string ReadInstructionName(Session& session, const InstructionKey& key) {
  const char* query = IsAdvanceOrLoan(key.type) ? "Select SINAME From INS_ADVLOAN Where "
                                                : "Select OTHNAME From INS_OTHER Where ";
  return session.data.FnVarGetDbValue(query + WhereInstruction(key).text(), "").ToText();
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
