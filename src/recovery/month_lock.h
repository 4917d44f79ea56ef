#pragma once

#include <optional>
#include <string>
#include <vector>

#include "runtime/date.h"

namespace ktl {

struct Session;

// The two switches of a month.
struct MonthSwitches {
  bool month = false;  // LOCKEDYN
  bool leave = false;  // ATTLOCKYN

  bool operator==(const MonthSwitches&) const = default;
};

// After a click on one of them: a locked month has its leave track locked too.
MonthSwitches TiedToMonth(MonthSwitches clicked);  // the month lock was clicked
MonthSwitches TiedToLeave(MonthSwitches clicked);  // the leave-track lock was clicked

struct LockMonthRow {
  long monthYear = 0;
  std::string name;
  MonthSwitches now;
};

// Locks the leave track of every locked month.
void RepairLeaveLocks(Session& session);
std::vector<LockMonthRow> ReadLockMonths(Session& session);  // the newest first
// The same as a text, for the turn to write. To be read before them.
std::string LockMonthsText(Session& session);

// Writes every month, changed or not, each by itself; audits the changed ones.
void SaveLockMonths(Session& session, const std::vector<LockMonthRow>& rows);

// Who turned which lock on which machine, as the database has noted it; the newest first.
struct LockHistoryRow {
  std::string month;
  std::string userName;
  std::string systemName;
  bool locked = false;
  std::optional<Date> changed;
};
std::vector<LockHistoryRow> ReadLockHistory(Session& session);

}  // namespace ktl
