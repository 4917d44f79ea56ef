#pragma once

#include <optional>
#include <string>
#include <vector>

#include "instructions/entry_questions.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// Whose instalments are shown, and of which type: None for all.
struct MonthViewScope {
  long employee = 0;
  InstructionType type = InstructionType::None;
};

// One instalment of the month, as stored and as edited.
struct MonthViewRow {
  InstructionKey key;
  long counter = 0;
  std::string type;  // the company's word for it
  std::string name;
  std::optional<double> EMIAMT, MDFYAMT;
  std::string REMARKS;
  bool ownedElsewhere = false;  // SEPPIYN: the interest screens own the amount

  std::optional<double> amount;  // what the cells hold now
  std::string remarks;
  bool changed = false;
};

// The newest month of the list, or the newest in which this employee has an instalment; 0 for an empty list.
long NewestMonth(Session& session, const MonthViewScope& scope, const std::vector<ListRow>& months);

// By type, name and serial number.
std::vector<MonthViewRow> ReadMonthRows(Session& session, const MonthViewScope& scope, long monthYear);
// The same rows as a text, for the turn to write. To be read before them.
std::string MonthRowsText(Session& session, const MonthViewScope& scope, long monthYear);
// Takes what was typed: as it will be stored.
void TakeAmount(MonthViewRow& row, std::string_view typed);
void TakeRemarks(MonthViewRow& row, std::string_view typed);
// Of advances and loans: with this amount more would be recovered than there is.
bool RecoversTooMuch(Session& session, const MonthViewRow& row);
// What is stored for the row, into its amount.
void RestoreAmount(Session& session, MonthViewRow& row);

// What stands against an update.
std::optional<Refusal<NoField>> CheckMonthRows(Session& session, const MonthViewScope& scope, long monthYear,
                                               const std::vector<MonthViewRow>& rows);
// Writes the changed rows, flags and audits each.
void WriteMonthRows(Session& session, long monthYear, const std::vector<MonthViewRow>& rows);

}  // namespace ktl
