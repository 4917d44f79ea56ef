#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/refusal.h"
#include "instructions/bulk_list.h"
#include "instructions/instruction_parent.h"
#include "runtime/date.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// The advances or loans of many employees, to be deleted together.

// One of them, rupees.
struct BulkRow {
  InstructionKey key;
  std::string reference, employeeName, name;
  std::optional<Date> date;
  double amount = 0;
  double interest = 0;
  std::optional<long> completed;  // the highest number of its instalments within the months
  long lastMonth = 0;             // of the whole schedule; 0 without one
  std::string lastMonthName;      // "" when the company has no such month
  bool employeeLocked = false;
  double recovered = 0;  // by receipts, by salaries and by hand

  double Balance() const { return amount + interest - recovered; }
  bool IsRecovered() const { return Balance() <= 0; }
  bool operator==(const BulkRow&) const = default;
};

// The months of the company, newest first; the value is MONTHYEAR.
std::vector<ListRow> ReadCompanyMonths(Session& session);
// The employees with an instruction of the type, by the column that is shown.
std::vector<ListRow> ReadInstructedEmployees(Session& session, InstructionType type, const char* shownColumn);

enum class BulkField { None, FromMonth };
using BulkRefusal = Refusal<BulkField>;

// Only one month chosen: the other is the company's first or last.
std::optional<BulkRefusal> CheckBulkFilter(const BulkFilter& filter);
std::vector<BulkRow> ReadBulkRows(Session& session, const BulkFilter& filter);

// Any locked month from there on, whether an instruction touches it or not; from the first one without a
// month.
std::optional<BulkRefusal> CheckBulkDelete(Session& session, long fromMonth);
// One of them with everything that hangs on it, as a whole or not at all. Throws ChangedMeanwhile when it is
// no longer as it was listed.
void DeleteBulkRow(Session& session, const BulkFilter& filter, const BulkRow& row);

}  // namespace ktl
