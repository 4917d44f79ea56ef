#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace ktl {

// A month of a schedule as one operation sees it; lists of them are in ascending order.
struct AdjustableMonth {
  long monthYear = 0;
  double amount = 0;  // what the operation adjusts: the modified amount, principal or interest
  double principal = 0;
  bool recovered = false;
};

struct MonthChange {
  long monthYear = 0;
  double amount = 0;  // the new one
  bool deleted = false;
  bool flagged = false;  // the salary side must calculate the month again
};

enum class AdjustmentQuestion { MakeItZero, ContinueNegative };

// What a walk needs of the outside.
struct AdjustmentHooks {
  std::function<bool(AdjustmentQuestion)> ask;  // true for Yes
  std::function<void(const MonthChange&)> write;
};

// How the operations that spread a difference over later months differ; each difference is wanted.
struct SpreadRules {
  bool takesOff = false;  // the shares come off the months instead of being added to them
  // A recovered month does not count for the share. It is written all the same.
  bool countsOpenMonthsOnly = false;
  bool roundsWithoutSign = false;   // else a negative share is rounded up as it comes
  bool stopsWhenPlaced = false;     // else the walk runs to the last month and writes the rest unchanged
  bool endsOnNoDifference = false;  // else the first month is written unchanged
  bool asksAboutNegative = false;
  // After "make it zero" the month's own amount goes back to the difference too, not the share alone.
  bool zeroGivesBackMonth = false;
  bool zeroWithoutPrincipal = false;  // interest of a month without principal becomes 0
  bool raisesFlags = false;
};

// The EMI editor after a changed month, its interest part, and after a deleted month.
inline constexpr SpreadRules kEditorSaveRules{.countsOpenMonthsOnly = true,
                                              .roundsWithoutSign = true,
                                              .stopsWhenPlaced = true,
                                              .endsOnNoDifference = true,
                                              .asksAboutNegative = true,
                                              .zeroGivesBackMonth = true};
inline constexpr SpreadRules kEditorSaveInterestRules = [] {
  SpreadRules rules = kEditorSaveRules;
  rules.zeroWithoutPrincipal = true;
  return rules;
}();
inline constexpr SpreadRules kEditorDeleteRules{.countsOpenMonthsOnly = true};
// The receipts screen after a saved and after a deleted receipt.
inline constexpr SpreadRules kReceiptSaveRules{.takesOff = true,
                                               .roundsWithoutSign = true,
                                               .stopsWhenPlaced = true,
                                               .asksAboutNegative = true,
                                               .raisesFlags = true};
inline constexpr SpreadRules kReceiptDeleteRules{
    .roundsWithoutSign = true, .stopsWhenPlaced = true, .asksAboutNegative = true, .raisesFlags = true};

struct SpreadOutcome {
  double left = 0;        // of the difference; below 0 when the last share was more than what was left
  bool madeZero = false;  // "make it zero" was answered with Yes
};

// Spreads the difference over the months from the index `first` on, in whole-rupee shares.
SpreadOutcome SpreadDifference(const std::vector<AdjustableMonth>& months, std::size_t first,
                               double difference, const SpreadRules& rules, const AdjustmentHooks& hooks);

// What happens to a month whose amount is used up.
enum class EmptiedMonth { Deleted, Kept };

// Takes an overpayment off the end of the schedule, month by month upwards, not before fromMonth. A rest
// under one rupee is dropped. A negative difference is put on the last month after a question, and raises no
// flag.
void TakeFromEnd(const std::vector<AdjustableMonth>& months, double difference, long fromMonth, long toMonth,
                 EmptiedMonth emptied, const AdjustmentHooks& hooks);

// The index of the first month that is not before monthYear.
std::size_t FirstMonthFrom(const std::vector<AdjustableMonth>& months, long monthYear);

}  // namespace ktl
