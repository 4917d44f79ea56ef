#include "recovery/adjustment.h"

#include <algorithm>
#include <cmath>

#include "common/amounts.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr double kSmallestRest = 1.0;

// 0 when no month counts.
double ShareOf(double difference, std::ptrdiff_t count, const SpreadRules& rules) {
  if (count == 0) return 0;
  const double share = RoundTwoPlaces(difference / static_cast<double>(count));
  if (!rules.roundsWithoutSign) return FnDblRoundUp(share);
  return std::copysign(FnDblRoundUp(std::fabs(share)), difference);
}

bool IsLastPiece(double left, double share, const SpreadRules& rules) {
  return rules.roundsWithoutSign ? std::fabs(left) < std::fabs(share) : share > left;
}

double LastPiece(double left, const SpreadRules& rules) {
  return rules.roundsWithoutSign ? left : std::max(left, 0.0);
}

}  // namespace

std::size_t FirstMonthFrom(const std::vector<AdjustableMonth>& months, long monthYear) {
  const auto first = std::ranges::lower_bound(months, monthYear, {}, &AdjustableMonth::monthYear);
  return static_cast<std::size_t>(first - months.begin());
}

SpreadOutcome SpreadDifference(const std::vector<AdjustableMonth>& months, std::size_t first,
                               double difference, const SpreadRules& rules, const AdjustmentHooks& hooks) {
  SpreadOutcome outcome{difference};
  if (first >= months.size() || (rules.endsOnNoDifference && difference == 0)) return outcome;
  const auto begin = months.begin() + static_cast<std::ptrdiff_t>(first);
  const auto count = std::count_if(begin, months.end(), [&rules](const AdjustableMonth& month) {
    return !(rules.countsOpenMonthsOnly && month.recovered);
  });
  const double share = ShareOf(difference, count, rules);
  bool asked = false;
  for (auto month = begin; month != months.end(); ++month) {
    const bool last = IsLastPiece(outcome.left, share, rules);
    const double piece = last ? LastPiece(outcome.left, rules) : share;
    double amount = month->amount + (rules.takesOff ? -piece : piece);
    outcome.left -= share;  // of the last piece too, so that what it falls short of stays as a negative rest
    if (amount < 0 && rules.asksAboutNegative) {
      if (!asked) outcome.madeZero = hooks.ask(AdjustmentQuestion::MakeItZero);
      asked = true;
      if (outcome.madeZero) {
        outcome.left += share + (rules.zeroGivesBackMonth ? month->amount : 0);
        amount = 0;
      }
    }
    if (rules.zeroWithoutPrincipal && month->principal == 0) amount = 0;
    hooks.write({month->monthYear, amount, false, rules.raisesFlags});
    if (rules.stopsWhenPlaced && (last || outcome.left == 0)) break;
  }
  return outcome;
}

void TakeFromEnd(const std::vector<AdjustableMonth>& months, double difference, long fromMonth, long toMonth,
                 EmptiedMonth emptied, const AdjustmentHooks& hooks) {
  if (difference == 0 || months.empty()) return;
  if (difference < 0) {
    if (!hooks.ask(AdjustmentQuestion::ContinueNegative)) return;
    hooks.write({months.back().monthYear, months.back().amount + std::fabs(difference)});
    return;
  }
  long steps = toMonth - fromMonth + 1;
  for (auto month = months.rbegin(); month != months.rend() && steps > 0; ++month, --steps) {
    if (month->monthYear >= fromMonth) {
      const double amount = std::fabs(difference) >= month->amount ? 0 : month->amount - difference;
      difference -= month->amount;
      const bool deleted = amount == 0 && emptied == EmptiedMonth::Deleted;
      hooks.write({month->monthYear, amount, deleted, true});
    }
    if (difference < kSmallestRest) break;
  }
}

}  // namespace ktl
