#include "recovery/adjustment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace ktl {
namespace {

struct Walk {
  std::vector<double> amounts;
  int questions = 0;
  int flagged = 0;
  int deleted = 0;
  bool answer = true;

  AdjustmentHooks Hooks() {
    return {[this](AdjustmentQuestion) { return ++questions, answer; },
            [this](const MonthChange& change) {
              if (change.deleted) {
                ++deleted;
                amounts.at(static_cast<std::size_t>(change.monthYear)) = 0;
              } else {
                amounts.at(static_cast<std::size_t>(change.monthYear)) = change.amount;
              }
              flagged += change.flagged ? 1 : 0;
            }};
  }
};

// Months 0, 1, 2, ...; the months in `recovered` are.
std::vector<AdjustableMonth> Months(const std::vector<double>& amounts,
                                    const std::vector<std::size_t>& recovered = {}) {
  std::vector<AdjustableMonth> months;
  for (const double amount : amounts)
    months.push_back({static_cast<long>(months.size()), amount, amount, false});
  for (const std::size_t row : recovered) months[row].recovered = true;
  return months;
}

using Amounts = std::vector<double>;

TEST(SpreadTest, EachFamilyHasItsOwnWay) {
  const struct {
    const char* what;
    SpreadRules rules;
    Amounts before;
    std::vector<std::size_t> recovered;
    std::size_t first;
    double difference;
    bool makeZero;
    Amounts after;
    double left;
    int questions;
    int flagged;
  } cases[] = {
      {"shares that fit",
       kEditorSaveRules,
       {1000, 700, 1000, 1000, 1000, 1000},
       {},
       2,
       300,
       true,
       {1000, 700, 1075, 1075, 1075, 1075},
       0,
       0,
       0},
      {"a share is a whole rupee, the last month takes the rest",
       kEditorSaveRules,
       {990, 1000, 1000, 1000},
       {},
       1,
       10,
       true,
       {990, 1004, 1004, 1002},
       -2,
       0,
       0},
      {"editor gives the zeroed month back",
       kEditorSaveRules,
       {1900, 200, 200, 200},
       {},
       1,
       -900,
       true,
       {1900, 0, 0, 0},
       -300,
       1,
       0},
      {"receipts keep the zeroed month",
       kReceiptSaveRules,
       {1900, 200, 200, 200},
       {},
       1,
       900,
       true,
       {1900, 0, 0, 0},
       900,
       1,
       3},
      {"No leaves it negative",
       kEditorSaveRules,
       {1900, 200, 200, 200},
       {},
       1,
       -900,
       false,
       {1900, -100, -100, -100},
       0,
       1,
       0},
      {"only what comes out negative is made zero",
       kEditorSaveRules,
       {0, 50, 500, 500},
       {},
       1,
       -300,
       true,
       {0, 0, 400, 400},
       -50,
       1,
       0},
      {"the editor counts open months, writes all",
       kEditorSaveRules,
       {0, 100, 100, 100},
       {1},
       1,
       100,
       true,
       {0, 150, 150, 100},
       0,
       0,
       0},
      {"all recovered: a share of nothing",
       kEditorSaveRules,
       {0, 100, 100},
       {1, 2},
       1,
       100,
       true,
       {0, 100, 100},
       100,
       0,
       0},
      {"receipts count recovered months",
       kReceiptSaveRules,
       {100, 100, 100},
       {0, 1},
       0,
       30,
       true,
       {90, 90, 90},
       0,
       0,
       3},
      {"no difference: the editor writes nothing, receipts the first month",
       kReceiptSaveRules,
       {100, 100},
       {},
       0,
       0,
       true,
       {100, 100},
       0,
       0,
       1},
      {"less received puts on", kReceiptSaveRules, {100, 100}, {}, 0, -30, true, {115, 115}, 0, 0, 2},
      {"a deleted receipt puts its amount on",
       kReceiptDeleteRules,
       {100, 100, 100},
       {},
       0,
       100,
       true,
       {134, 134, 132},
       -2,
       0,
       3},
      {"a deleted month: to the last row",
       kEditorDeleteRules,
       {100, 100, 100, 100},
       {},
       0,
       10,
       true,
       {103, 103, 103, 101},
       -2,
       0,
       0},
      {"recovered months get shares and leave none",
       kEditorDeleteRules,
       {100, 100, 100},
       {0, 1},
       0,
       10,
       true,
       {110, 100, 100},
       -20,
       0,
       0},
      {"a deleted month below 0 goes down unasked",
       kEditorDeleteRules,
       {10, 10},
       {},
       0,
       -50,
       true,
       {10, -15},
       0,
       0,
       0},
      {"no later month", kEditorSaveRules, {100}, {}, 1, 30, true, {100}, 30, 0, 0},
      {"half a paisa a month is none",
       kEditorSaveRules,
       {1, 1, 1, 1},
       {},
       1,
       0.01,
       true,
       {1, 1, 1, 1},
       0.01,
       0,
       0},
  };
  for (const auto& c : cases) {
    Walk walk{.amounts = c.before, .answer = c.makeZero};
    const SpreadOutcome outcome =
        SpreadDifference(Months(c.before, c.recovered), c.first, c.difference, c.rules, walk.Hooks());
    EXPECT_EQ(walk.amounts, c.after) << c.what;
    EXPECT_DOUBLE_EQ(outcome.left, c.left) << c.what;
    EXPECT_EQ(walk.questions, c.questions) << c.what;
    EXPECT_EQ(walk.flagged, c.flagged) << c.what;
    EXPECT_EQ(outcome.madeZero, c.questions > 0 && c.makeZero) << c.what;
  }
}

TEST(SpreadTest, InterestWithoutPrincipalIsZeroAndLeavesTheDifference) {
  std::vector<AdjustableMonth> months = Months({50, 50, 50});
  months[1].principal = 0;
  Walk walk{.amounts = {50, 50, 50}};
  EXPECT_EQ(SpreadDifference(months, 0, 30, kEditorSaveInterestRules, walk.Hooks()).left, 0);
  EXPECT_EQ(walk.amounts, (Amounts{60, 0, 60}));
}

TEST(TakeFromEndTest, DropsWholeMonthsAndARestUnderOneRupee) {
  const struct {
    const char* what;
    double difference;
    long fromMonth;
    EmptiedMonth emptied;
    bool goOn;
    Amounts after;
    int deleted;
    int flagged;
    int questions;
  } cases[] = {
      {"into the month before", 150, 0, EmptiedMonth::Deleted, true, {100, 100, 50, 0}, 1, 2, 0},
      {"exactly one month", 100, 0, EmptiedMonth::Deleted, true, {100, 100, 100, 0}, 1, 1, 0},
      {"the rest is dropped", 100.99, 0, EmptiedMonth::Deleted, true, {100, 100, 100, 0}, 1, 1, 0},
      {"a rupee is not", 101, 0, EmptiedMonth::Deleted, true, {100, 100, 99, 0}, 1, 2, 0},
      {"not before the month", 350, 2, EmptiedMonth::Deleted, true, {100, 100, 0, 0}, 2, 2, 0},
      {"more than all", 900, 0, EmptiedMonth::Kept, true, {0, 0, 0, 0}, 0, 4, 0},
      {"less: on the last month, unflagged",
       -30,
       0,
       EmptiedMonth::Deleted,
       true,
       {100, 100, 100, 130},
       0,
       0,
       1},
      {"less, refused", -30, 0, EmptiedMonth::Deleted, false, {100, 100, 100, 100}, 0, 0, 1},
      {"nothing", 0, 0, EmptiedMonth::Deleted, true, {100, 100, 100, 100}, 0, 0, 0},
  };
  for (const auto& c : cases) {
    Walk walk{.amounts = {100, 100, 100, 100}, .answer = c.goOn};
    TakeFromEnd(Months(walk.amounts), c.difference, c.fromMonth, 3, c.emptied, walk.Hooks());
    EXPECT_EQ(walk.amounts, c.after) << c.what;
    EXPECT_EQ(walk.deleted, c.deleted) << c.what;
    EXPECT_EQ(walk.flagged, c.flagged) << c.what;
    EXPECT_EQ(walk.questions, c.questions) << c.what;
  }
}

// With "make it zero" the editor still accounts for every paisa: what the months changed by and what is left
// are the difference. The receipts family loses what the zeroed months could not give.
TEST(SpreadTest, MakeItZeroLeavesNoMonthBelowZero) {
  std::mt19937 random(20260915);
  for (int run = 0; run < 500; ++run) {
    Amounts before(2 + random() % 12);
    for (double& amount : before) amount = static_cast<double>(random() % 40000) / 100;
    const double difference = -static_cast<double>(1 + random() % 300000) / 100;
    const bool editor = run % 2 == 0;
    Walk walk{.amounts = before};
    const SpreadOutcome outcome =
        SpreadDifference(Months(before), 0, editor ? difference : -difference,
                         editor ? kEditorSaveRules : kReceiptSaveRules, walk.Hooks());
    double fallen = 0;
    double zeroed = 0;
    for (std::size_t row = 0; row < before.size(); ++row) {
      ASSERT_GE(walk.amounts[row], 0) << run;
      fallen += before[row] - walk.amounts[row];
      if (walk.amounts[row] == 0) zeroed += before[row];
    }
    // A rest below 0 in the walk's direction is what the last share was more than needed.
    const double left = std::max(editor ? -outcome.left : outcome.left, 0.0);
    const double lost = editor || !outcome.madeZero ? 0 : zeroed;
    ASSERT_NEAR(fallen, -difference - left + lost, 0.001) << run;
  }
}

}  // namespace
}  // namespace ktl
