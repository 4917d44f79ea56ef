#include "instructions/components.h"

#include <algorithm>

#include "database/recordset.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"

namespace ktl {

namespace {

Statement WhereWithoutComponents(Session& session, const InstructionKey& key) {
  return session.Sql(
      "{} And ACTPRNAMT Is Null And ACTINTAMT Is Null And MDFPRNAMT Is Null And MDFINTAMT Is Null",
      WhereInstruction(key));
}

}  // namespace

bool KeepsComponentsApart(Session& session, const InstructionKey& key) {
  return session.data
             .Guarding(session.Sql("Select REDUCINGBALYN From INS_MASTER Where SITYPE = {} And SINAME = "
                                   "(Select SINAME From INS_ADVLOAN Where {})",
                                   key.type, WhereInstruction(key)))
             .NumberOr0() != 0;
}

void CountComponents(Session& session, const InstructionKey& key, std::vector<ScheduleMonth>& months) {
  Recordset rs(session.Cn,
               session.Sql("Select MONTHYEAR, EMIAMT, MDFYAMT, INTAMT From INS_EMIDETAIL Where {}",
                           WhereWithoutComponents(session, key)));
  for (; !rs.Eof(); rs.MoveNext()) {
    const ScheduleMonth bare = ReadScheduleMonth(rs);
    const auto month = std::ranges::find(months, bare.monthYear, &ScheduleMonth::monthYear);
    if (month == months.end()) continue;
    const double interest = bare.INTAMT.value_or(0);
    month->ACTINTAMT = month->MDFINTAMT = interest;
    month->ACTPRNAMT = bare.EMIAMT.value_or(0) - interest;
    month->MDFPRNAMT = bare.MDFYAMT.value_or(0) - interest;
  }
}

void StoreComponents(Session& session, const InstructionKey& key) {
  session.Cn.Execute(session.Sql(
      "Update INS_EMIDETAIL Set ACTINTAMT = ISNULL(INTAMT, 0), MDFINTAMT = ISNULL(INTAMT, 0), ACTPRNAMT = "
      "ISNULL(EMIAMT, 0) - ISNULL(INTAMT, 0), MDFPRNAMT = ISNULL(MDFYAMT, 0) - ISNULL(INTAMT, 0) Where {}",
      WhereWithoutComponents(session, key)));
}

ChangedComponents ComponentsOfChangedAmount(double amount, double interestBefore) {
  const double interest = std::min(interestBefore, amount);
  return {amount - interest, interest};
}

}  // namespace ktl
