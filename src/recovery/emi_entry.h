#pragma once

#include <optional>
#include <string>

#include "instructions/instruction_parent.h"
#include "screen/desk.h"

namespace ktl {

struct Session;

// A range of months as typed.
struct MonthRangeText {
  std::string from;
  std::string to;

  long FromMonth() const;  // 0 when the text is no month
  long ToMonth() const;
  long Count() const { return ToMonth() - FromMonth() + 1; }
};

// A field of the editor: what it holds and what it held when its row was picked.
struct EditedAmount {
  std::string text;
  std::string tag;

  double Now() const;
  double Before() const;
  bool IsChanged() const { return Now() != Before(); }
};

// What stands in the EMI editor's fields.
struct EmiEntry {
  long lngCounter = 0;  // 0: nothing picked
  MonthRangeText months;
  EditedAmount amount;      // the principal of a reducing instruction
  EditedAmount interest;    // of a reducing instruction only
  std::string institution;  // bound INSTID, "" when the text matches no row of the list
  std::string remarks;
};

enum class EmiField { None, New, From, To, Amount, Institution };

struct EmiRefusal {
  std::string text;
  EmiField field = EmiField::None;
  Icon icon = Icon::Information;
  std::string title = {};  // "" for the application's own
};

// The two months, one after the other and against the company's first month.
std::optional<EmiRefusal> CheckMonthRange(Session& session, const MonthRangeText& months);
// Locked months of the range.
std::optional<EmiRefusal> CheckMonthLocks(Session& session, const MonthRangeText& months);
// All checks before a save, in their fixed order; nothing is changed.
std::optional<EmiRefusal> CheckEmiEntry(Session& session, const InstructionKey& key, const EmiEntry& entry);

// Updates the months of the range that are there, adds the others, flags all. True when one was added.
bool WriteEmiMonths(Session& session, InstructionParent& parent, const EmiEntry& entry);

}  // namespace ktl
