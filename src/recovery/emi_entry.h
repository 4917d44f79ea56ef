#pragma once

#include <optional>
#include <string>
#include <vector>

#include "common/typed_amount.h"
#include "frame/refusal.h"
#include "instructions/instruction_parent.h"
#include "instructions/schedule_month.h"

namespace ktl {

struct Session;

// A range of months as typed.
struct MonthRange {
  MonthRange(std::string typedFrom, std::string typedTo);

  std::string fromText, toText;
  long from, to;  // 0 when the text is no month

  long Count() const { return to - from + 1; }
  bool Holds(long monthYear) const { return monthYear >= from && monthYear <= to; }
};

// A field of an editor: what it holds, to the paisa, and what it held when its row was picked.
struct EditedAmount {
  EditedAmount() = default;
  EditedAmount(std::string typed, std::string tag);

  std::string text, textBefore;  // audit texts quote them
  double now = 0, before = 0;

  bool IsChanged() const { return now != before; }
};

// What stands in the EMI editor's fields.
struct EmiEntry {
  long lngCounter = 0;  // 0: nothing picked
  MonthRange months;
  EditedAmount amount;    // the principal of a reducing instruction
  EditedAmount interest;  // of a reducing instruction only
  long institution = 0;   // INSTID, 0 when the text matches no row of the list
  std::string remarks;
};

enum class EmiField { None, New, From, To, Amount, Interest, Institution, Rate };
using EmiRefusal = Refusal<EmiField>;

// All checks before a save, in their fixed order, with the question about a very long range; nothing is
// changed.
std::optional<EmiRefusal> CheckEmiEntry(Session& session, const InstructionKey& key, const EmiEntry& entry);
// The typed amount alone counts, the principal of a reducing instruction. `amountBefore` is what the row in
// work held.
bool RecoversTooMuch(const InstructionTotals& totals, double amountBefore, const EmiEntry& entry);
// Updates the months of the range that are there, adds the others, flags all. True when one was added.
bool WriteEmiMonths(Session& session, InstructionParent& parent, const EmiEntry& entry);
// By the answer to "Do you want to Adjust the EMI Amount?": Yes spreads what the saved row held before over
// the rows behind it, No adds a month with what the range has lost.
void AdjustSavedMonths(Session& session, InstructionParent& parent, Answer answer, const EmiEntry& entry,
                       std::size_t row, const ScheduleMonth& before);
void AuditSavedMonths(Session& session, const InstructionKey& key, const std::string& caption, bool reducing,
                      const EmiEntry& entry, bool added);

// Locks that stand against the delete of a month.
std::optional<EmiRefusal> CheckMonthDelete(Session& session, const InstructionKey& key, long monthYear);
void DeleteEmiMonth(Session& session, const InstructionKey& key, const ScheduleMonth& month);
// Yes spreads what the month held over the rows from its place on, No adds a month with it.
void AdjustDeletedMonth(Session& session, InstructionParent& parent, Answer answer, std::size_t row,
                        const ScheduleMonth& deleted);
// No answer where no question was due.
void AuditDeletedMonth(Session& session, const InstructionKey& key, const std::string& caption, bool reducing,
                       const ScheduleMonth& month, std::optional<Answer> answer);

// The panel that computes the interest of a reducing instruction into a range of months.
struct InterestPanel {
  MonthRange months;
  double rate = 0;  // percent a year
  bool daysBasis = false;
  bool exactDates = false;
};
struct PanelRefusal : EmiRefusal {
  bool empties = false;  // the field is to be typed again
};
std::optional<PanelRefusal> CheckInterestPanel(Session& session, const InstructionKey& key,
                                               const InterestPanel& panel,
                                               const std::vector<ScheduleMonth>& months);
// The balance falls by the principal of every month; only those of the range are written and flagged.
void WriteInterests(Session& session, const InstructionKey& key, const InterestPanel& panel,
                    const std::vector<ScheduleMonth>& months);

}  // namespace ktl
