#include "recovery/emi_months.h"

#include <fmt/format.h>

#include "database/recordset.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"

namespace ktl {

namespace {

Statement ListStatement(Session& session, const InstructionKey& key) {
  const Statement columns(
      "EMI.COUNTER, EMI.MONTHYEAR, EMI.EMIAMT, EMI.ACTPRNAMT, EMI.ACTINTAMT, EMI.MDFPRNAMT, EMI.MDFINTAMT, "
      "EMI.MDFYAMT");
  const Statement where = session.Sql("Where EMI.EMPID = {} And EMI.SERIALNO = {} And EMI.SITYPE = {}",
                                      key.employee, key.serial, key.type);
  if (!HasInstitution(key.type)) {
    return session.Sql(
        "Select {}, '' As INSTNAME, EMI.REMARKS From INS_EMIDETAIL EMI {} Order By EMI.MONTHYEAR", columns,
        where);
  }
  return session.Sql(
      "Select {}, INST.INSTNAME, EMI.REMARKS From INS_EMIDETAIL EMI, MAS_INSTITUTION INST {} And EMI.INSTID "
      "= INST.INSTID And INST.TYPEID = {} Order By EMI.MONTHYEAR",
      columns, where, key.type);
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

std::vector<ScheduleMonth> ReadEmiMonths(Session& session, const InstructionParent& parent) {
  const InstructionKey key = parent.Key();
  const std::set<long> recovered = IsAdvanceOrLoan(key.type) ? parent.RecoveredMonths() : std::set<long>();
  std::vector<ScheduleMonth> months;
  for (Recordset rs(session.Cn, ListStatement(session, key)); !rs.Eof(); rs.MoveNext()) {
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

std::optional<LastMonth> ReadLastMonth(Session& session, const InstructionKey& key) {
  const Recordset last(session.Cn, session.Sql("Select Max(COUNTER), Max(MONTHYEAR) From INS_EMIDETAIL Where "
                                               "{} And EMIAMT <> 0",
                                               WhereInstruction(key)));
  if (last.Eof() || last[1].IsNull()) return std::nullopt;
  return LastMonth{last[0].ToLong(), last[1].ToLong()};
}

std::vector<ListRow> ReadInstitutionRows(Session& session, InstructionType type) {
  std::vector<ListRow> rows;
  if (!HasInstitution(type)) return rows;
  Recordset rs(session.Cn, session.Sql("Select INSTID, INSTNAME From MAS_INSTITUTION Where TYPEID = {} Order "
                                       "By INSTNAME",
                                       type));
  for (; !rs.Eof(); rs.MoveNext()) rows.push_back({rs["INSTNAME"].TextOrEmpty(), rs["INSTID"].TextOrEmpty()});
  return rows;
}

void RaiseFlags(Session& session, const InstructionKey& key, long monthYear) {
  RaiseEditMode(session, key.employee, OneMonth(monthYear), AttendanceWording::EmployeeFirst);
}

long CountLockedMonths(Session& session, long firstMonth, long lastMonth) {
  long count = 0;
  for (long month = firstMonth; month <= lastMonth; ++month) count += IsMonthLocked(session, month) ? 1 : 0;
  return count;
}

long CountLockedMonthsAtOnce(Session& session, long firstMonth, long lastMonth) {
  return session.data
      .Guarding(session.Sql("Select Count(MONTHYEAR) From MAS_MONTHYEAR Where LOCKEDYN = 1 And "
                            "MONTHYEAR >= {} AND MONTHYEAR <= {}",
                            firstMonth, lastMonth))
      .ToLong();
}

std::string LockedMonthsText(long count) {
  return fmt::format("{} Month(s) locked. Cannot save.\r\nUnlock months to save data.", count);
}

}  // namespace ktl
