#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "common/month_year.h"
#include "instructions/schedule_month.h"
#include "screen/grid_list.h"

namespace ktl {

// What every list of a schedule begins with.
using ScheduleColumn = GridList<ScheduleMonth>::Column;
inline ScheduleColumn TickColumn() {
  return {{"", CellType::Tick, 36, false, false}, [](const ScheduleMonth&) { return "0"; }};
}
inline ScheduleColumn CounterColumn() {
  return {{"Counter", CellType::Number, 70},
          [](const ScheduleMonth& month) { return std::to_string(month.counter); }};
}
inline ScheduleColumn MonthColumn() {
  return {{"Month", CellType::Text, 90},
          [](const ScheduleMonth& month) { return FnStrFormatMonthYear(month.monthYear); }};
}

// The instruction of the serial number becomes the active line of its list; 0 for none.
template <typename Row>
void MarkSerial(Grid& grid, const std::vector<Row>& rows, long serial) {
  const auto active = std::ranges::find(rows, serial, &Row::serial);
  grid.activeRow =
      serial != 0 && active != rows.end() ? static_cast<std::size_t>(active - rows.begin()) : kNoRow;
}

}  // namespace ktl
