#include "recovery/component_difference.h"

#include "database/recordset.h"
#include "frame/session.h"

namespace ktl {

MonthComponents WithDifference(MonthComponents month, double difference) {
  month.principal += difference;
  if (month.principal >= 0) return month;
  month.interest += month.principal;
  month.principal = 0;
  return month;
}

void StoreDifference(Session& session, const Statement& condition, double difference) {
  const Recordset row(session.Cn,
                      session.Sql("Select MDFPRNAMT, MDFINTAMT From INS_EMIDETAIL {}", condition));
  if (row.Eof()) return;
  const MonthComponents month =
      WithDifference({row["MDFPRNAMT"].NumberOr0(), row["MDFINTAMT"].NumberOr0()}, difference);
  session.Cn.Execute(session.Sql("Update INS_EMIDETAIL SET MDFPRNAMT = {}, MDFINTAMT = {} {}",
                                 month.principal, month.interest, condition));
}

}  // namespace ktl
