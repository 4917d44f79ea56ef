#include "instructions/premium_schedule.h"

#include "database/recordset.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"

namespace ktl {

std::vector<long> PremiumMonths(const PremiumTerms& terms) {
  std::vector<long> months;
  for (long month = terms.firstMonth; month <= terms.lastMonth; month += static_cast<long>(terms.period))
    months.push_back(month);
  return months;
}

PremiumPeriod PeriodOf(const std::vector<long>& months) {
  using enum PremiumPeriod;
  const long step = months.size() < 2 ? 0 : months[1] - months[0];
  for (const PremiumPeriod period : {Quarterly, HalfYearly, Yearly})
    if (static_cast<long>(period) == step) return period;
  return Monthly;
}

bool WritePremiumSchedule(Session& session, const InstructionKey& key, const PremiumTerms& terms,
                          long institution) {
  if (HasSchedule(session, key)) return false;
  Recordset rows(session.Cn, "Select * From INS_EMIDETAIL", OpenMode::AddOnly);
  long counter = 0;
  for (long month : PremiumMonths(terms)) {
    rows.AddNew();
    rows.Set("EMPID", key.employee);
    rows.Set("SERIALNO", key.serial);
    rows.Set("MONTHYEAR", month);
    rows.Set("SITYPE", NumberOf(key.type));
    rows.Set("Counter", ++counter);
    rows.Set("EMIAMT", terms.amount);
    rows.Set("MDFYAMT", terms.amount);
    rows.Set("INSTID", institution);
    rows.Update();
  }
  rows.Close();
  return true;
}

}  // namespace ktl
