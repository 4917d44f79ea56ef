#include "recovery/adjustment.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>

#include "runtime/numbers.h"

namespace ktl {
namespace {

// Months 0, 1, 2, ... "100 200*": the starred ones are recovered.
std::vector<AdjustableMonth> Months(const std::string& text) {
  std::vector<AdjustableMonth> months;
  std::istringstream stream(text);
  for (std::string word; stream >> word;)
    months.push_back({static_cast<long>(months.size()), Val(word), Val(word), word.back() == '*'});
  return months;
}

struct Walk {
  std::vector<AdjustableMonth> months;
  bool answer = true;
  int questions = 0, flagged = 0, deleted = 0;

  AdjustmentHooks Hooks() {
    return {[this](AdjustmentQuestion) { return ++questions, answer; },
            [this](const MonthChange& change) {
              months.at(static_cast<std::size_t>(change.monthYear)).amount = change.amount;
              flagged += change.flagged ? 1 : 0;
              deleted += change.deleted ? 1 : 0;
            }};
  }
  std::string Amounts() const {
    std::string text;
    for (const AdjustableMonth& month : months) text += NumberText(month.amount) + " ";
    return text;
  }
};

TEST(SpreadTest, EachFamilyHasItsOwnWay) {
  const SpreadRules &save = kEditorSaveRules, &remove = kEditorDeleteRules, &receipt = kReceiptSaveRules;
  const struct {
    const char* what;
    const SpreadRules& rules;
    const char* before;
    std::size_t first;
    double difference;
    bool makeZero;
    const char* after;  // the months, what is left, questions, flags
  } cases[] = {
      {"shares that fit", save, "700 1000 1000 1000 1000", 1, 300, true, "700 1075 1075 1075 1075 | 0 0 0"},
      {"the last month takes the rest", save, "990 1000 1000 1000", 1, 10, true,
       "990 1004 1004 1002 | -2 0 0"},
      {"the editor gives the month back", save, "1900 200 200 200", 1, -900, true, "1900 0 0 0 | -300 1 0"},
      {"receipts do not", receipt, "1900 200 200 200", 1, 900, true, "1900 0 0 0 | 900 1 3"},
      {"No leaves it negative", save, "0 200 200 200", 1, -900, false, "0 -100 -100 -100 | 0 1 0"},
      {"only negative months become zero", save, "0 50 500 500", 1, -300, true, "0 0 400 400 | -50 1 0"},
      {"open months count, all are written", save, "0 100* 100 100", 1, 100, true, "0 150 150 100 | 0 0 0"},
      {"all recovered: no share", save, "0 100* 100*", 1, 100, true, "0 100 100 | 100 0 0"},
      {"receipts count recovered ones", receipt, "100* 100* 100", 0, 30, true, "90 90 90 | 0 0 3"},
      {"nothing: the editor writes none", save, "100 100", 0, 0, true, "100 100 | 0 0 0"},
      {"nothing: receipts write the first", receipt, "100 100", 0, 0, true, "100 100 | 0 0 1"},
      {"less received", receipt, "100 100", 0, -30, true, "115 115 | 0 0 2"},
      {"a deleted receipt", kReceiptDeleteRules, "100 100 100", 0, 100, true, "134 134 132 | -2 0 3"},
      {"a deleted month", remove, "100 100 100 100", 0, 10, true, "103 103 103 101 | -2 0 0"},
      {"shares on recovered leave none", remove, "100* 100* 100", 0, 10, true, "110 100 100 | -20 0 0"},
      {"a deleted amount below 0", remove, "10 10", 0, -50, true, "10 -15 | 0 0 0"},
      {"no later month", save, "100", 1, 30, true, "100 | 30 0 0"},
      {"less than half a paisa each", save, "1 1 1 1", 1, 0.01, true, "1 1 1 1 | 0.01 0 0"},
  };
  for (const auto& c : cases) {
    Walk walk{Months(c.before), c.makeZero};
    const auto [left, madeZero] =
        SpreadDifference(Months(c.before), c.first, c.difference, c.rules, walk.Hooks());
    EXPECT_EQ(fmt::format("{}| {} {} {}", walk.Amounts(), NumberText(left), walk.questions, walk.flagged),
              c.after)
        << c.what;
    EXPECT_EQ(madeZero, walk.questions > 0 && c.makeZero) << c.what;
  }
}

TEST(SpreadTest, InterestWithoutPrincipalIsZeroAndLeavesTheDifference) {
  Walk walk{Months("50 50 50")};
  walk.months[1].principal = 0;
  EXPECT_EQ(SpreadDifference(walk.months, 0, 30, kEditorSaveInterestRules, walk.Hooks()).left, 0);
  EXPECT_EQ(walk.Amounts(), "60 0 60 ");
}

TEST(TakeFromEndTest, DropsWholeMonthsAndARestUnderOneRupee) {
  const struct {
    const char* what;
    double difference;
    long fromMonth;
    EmptiedMonth emptied;
    bool goOn;
    const char* after;  // the months, deleted ones, flags, questions
  } cases[] = {
      {"into the month before", 150, 0, EmptiedMonth::Deleted, true, "100 100 50 0 | 1 2 0"},
      {"exactly one month", 100, 0, EmptiedMonth::Deleted, true, "100 100 100 0 | 1 1 0"},
      {"the rest is dropped", 100.99, 0, EmptiedMonth::Deleted, true, "100 100 100 0 | 1 1 0"},
      {"a rupee is not", 101, 0, EmptiedMonth::Deleted, true, "100 100 99 0 | 1 2 0"},
      {"not before the month", 350, 2, EmptiedMonth::Deleted, true, "100 100 0 0 | 2 2 0"},
      {"more than all", 900, 0, EmptiedMonth::Kept, true, "0 0 0 0 | 0 4 0"},
      {"less: on the last month", -30, 0, EmptiedMonth::Deleted, true, "100 100 100 130 | 0 0 1"},
      {"less, refused", -30, 0, EmptiedMonth::Deleted, false, "100 100 100 100 | 0 0 1"},
      {"nothing", 0, 0, EmptiedMonth::Deleted, true, "100 100 100 100 | 0 0 0"},
  };
  for (const auto& c : cases) {
    Walk walk{Months("100 100 100 100"), c.goOn};
    TakeFromEnd(Months("100 100 100 100"), c.difference, c.fromMonth, 3, c.emptied, walk.Hooks());
    EXPECT_EQ(fmt::format("{}| {} {} {}", walk.Amounts(), walk.deleted, walk.flagged, walk.questions),
              c.after)
        << c.what;
  }
}

// With "make it zero" the editor still accounts for every paisa: what the months changed by and what is left
// are the difference. The receipts family loses what the zeroed months could not give.
TEST(SpreadTest, MakeItZeroLeavesNoMonthBelowZero) {
  std::mt19937 random(20260915);
  for (int run = 0; run < 500; ++run) {
    std::vector<AdjustableMonth> before(2 + random() % 12);
    for (std::size_t row = 0; row < before.size(); ++row)
      before[row] = {static_cast<long>(row), static_cast<double>(random() % 40000) / 100};
    const double fall = static_cast<double>(100 + random() % 300000) / 100;
    const bool editor = run % 2 == 0;
    Walk walk{before};
    const SpreadOutcome outcome = SpreadDifference(
        before, 0, editor ? -fall : fall, editor ? kEditorSaveRules : kReceiptSaveRules, walk.Hooks());
    double fallen = 0;
    double zeroed = 0;
    for (std::size_t row = 0; row < before.size(); ++row) {
      ASSERT_GE(walk.months[row].amount, 0) << run;
      fallen += before[row].amount - walk.months[row].amount;
      if (walk.months[row].amount == 0) zeroed += before[row].amount;
    }
    // A rest below 0 in the walk's direction is what the last share was more than needed.
    const double left = std::max(editor ? -outcome.left : outcome.left, 0.0);
    const double lost = editor || !outcome.madeZero ? 0 : zeroed;
    ASSERT_NEAR(fallen, fall - left + lost, 0.001) << run;
  }
}

}  // namespace
}  // namespace ktl
