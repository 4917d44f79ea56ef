#include "instructions/schedule_month.h"

#include <string_view>

#include "common/fetch.h"
#include "database/recordset.h"

namespace ktl {

ScheduleMonth ReadScheduleMonth(const Recordset& row) {
  const auto number = [&row](std::string_view column) {
    return row.HasField(column) ? static_cast<long>(row[column].NumberOr0()) : 0;
  };
  const auto amount = [&row](std::string_view column) -> ScheduleMonth::Amount {
    return row.HasField(column) ? NumberIfAny(row[column]) : std::nullopt;
  };
  const auto text = [&row](std::string_view column) {
    return row.HasField(column) ? row[column].TextOrEmpty() : "";
  };
  return {
      .counter = number("COUNTER"),
      .monthYear = number("MONTHYEAR"),
      .EMIAMT = amount("EMIAMT"),
      .MDFYAMT = amount("MDFYAMT"),
      .INTAMT = amount("INTAMT"),
      .ACTPRNAMT = amount("ACTPRNAMT"),
      .ACTINTAMT = amount("ACTINTAMT"),
      .MDFPRNAMT = amount("MDFPRNAMT"),
      .MDFINTAMT = amount("MDFINTAMT"),
      .institution = text("INSTNAME"),
      .remarks = text("REMARKS"),
      .markedRecovered = row.HasField("EMIRECVYN") && IsSet(row["EMIRECVYN"]),
  };
}

}  // namespace ktl
