#pragma once

#include <optional>
#include <string>

namespace ktl {

class Recordset;

// One month of an instruction as stored, rupees; an amount that is null in the row is not there.
struct ScheduleMonth {
  using Amount = std::optional<double>;

  long counter = 0;
  long monthYear = 0;
  Amount EMIAMT, MDFYAMT, INTAMT;
  Amount ACTPRNAMT, ACTINTAMT, MDFPRNAMT, MDFINTAMT;
  std::string institution;
  std::string remarks;
  bool markedRecovered = false;    // EMIRECVYN
  bool recoveredBySalary = false;  // a calculated salary has taken it

  bool IsRecovered() const { return markedRecovered || recoveredBySalary; }
};

// Of the current row, what columns it has; INSTNAME is the institution.
ScheduleMonth ReadScheduleMonth(const Recordset& row);

}  // namespace ktl
