#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formula/formula_run.h"
#include "instructions/instruction_type.h"
#include "runtime/date.h"
#include "screen/controls.h"

namespace ktl {

struct Session;

// One instruction for many employees: what advances, loans and premiums have in common.

// Who can be given something: nobody who is locked. Those of the filter while one is set.
std::vector<TickRow> ReadEmployeesToAllot(Session& session);
// The names without principal and interest apart.
std::vector<ListRow> ReadNamesToAllot(Session& session, InstructionType type);
bool IsNameListed(Session& session, InstructionType type, std::string_view name);

inline constexpr const char* kSomeEmployeeLocked = "One or More Employee(s) has Locked. Cannot Save";
// Asks nobody's lock while the company does not lock employees.
bool IsAnyLocked(Session& session, const std::vector<long>& employees, long firstMonth,
                 const std::string& lastMonth);

// Those in service on the day, in their order.
std::vector<long> InService(Session& session, const std::vector<long>& employees, const Date& day);

// A formula that stands for the amount of each employee; no text for none.
struct KeptFormula {
  std::string name;
  std::string text;
  double months = 0;

  bool IsSet() const { return !text.empty(); }
};

// What each is to get, rupees to the paisa. The formula is evaluated for him in the month and multiplied;
// where that gives 0, the typed amount counts.
class AllottedAmounts {
 public:
  struct Terms {
    double typed = 0;
    KeptFormula formula;
    double factor = 1;  // of the formula's result; a formula without one does not count
    long monthYear = 0;
  };
  // The formula is evaluated for all when the first is asked for, and tells how far it has come.
  AllottedAmounts(Session& session, const Terms& terms, const std::vector<long>& employees,
                  FormulaRun::ToldOfReckoned reckoned = {});

  // A formula that fails gives 0; why stands in the failure, which is "" otherwise.
  double Of(long employee, std::string& failure);

 private:
  double typed_;
  double factor_;
  std::optional<FormulaRun> formula_;
};

// Somebody whom a run has something to tell of.
struct AllotmentNote {
  long employee = 0;
  std::string why;
};
// Each in a transaction of his own, the amounts above 0 alone. When one fails, nothing of his stays and the
// rest goes on. Notes those who got nothing, and those whose formula failed.
std::vector<AllotmentNote> AllotToEach(Session& session, const std::vector<long>& employees,
                                       AllottedAmounts& amounts,
                                       const std::function<void(long employee, double amount)>& give,
                                       const std::function<void()>& done);

}  // namespace ktl
