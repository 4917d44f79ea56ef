#include "instructions/schedule.h"

#include <gtest/gtest.h>

#include <random>

#include "instructions/premium_schedule.h"
#include "support/errors.h"

namespace ktl {
namespace {

constexpr long kApr2026 = 24316;

ScheduleTerms ByCount(double total, double count, InstalmentRounding rounding) {
  return {.total = total, .firstMonth = kApr2026, .count = count, .rounding = rounding};
}

ScheduleTerms LumpSum(double total, double instalment) {
  return {.total = total, .firstMonth = kApr2026, .instalment = instalment};
}

std::vector<double> Amounts(const ScheduleTerms& terms) {
  std::vector<double> amounts;
  for (const ScheduleRow& row : GenerateSchedule(terms)) amounts.push_back(row.emiAmount);
  return amounts;
}

long ErrorOf(const ScheduleTerms& terms) {
  return ktl::ErrorOf([&] { GenerateSchedule(terms); });
}

TEST(Schedule, CountOnlyLeadsToAnInstalmentAndTheLastRowIsShort) {
  using enum InstalmentRounding;
  const struct {
    double total, count;
    InstalmentRounding rounding;
    std::vector<double> amounts;
  } cases[] = {
      {10000, 3, NearOneRupee, {3333, 3333, 3333, 1}},
      {10000, 3, NearTenRupee, {3340, 3340, 3320}},
      {10000, 3, NearFiftyRupee, {3350, 3350, 3300}},
      {12600, 6, NearOneRupee, {2100, 2100, 2100, 2100, 2100, 2100}},
      {5001, 2, NearOneRupee, {2501, 2500}},  // 2500.50: the half goes up
      {90, 20, NearTenRupee, {10, 10, 10, 10, 10, 10, 10, 10, 10}},
      // 9.6 rounds to 10: one ten, nothing above it
      {96, 10, NearTenRupee, {10, 10, 10, 10, 10, 10, 10, 10, 10, 6}},
      {245, 10, NearTenRupee, {30, 30, 30, 30, 30, 30, 30, 30, 5}},  // 24.5 rounds to 24, half to even
      {1000, 20, NearFiftyRupee, std::vector<double>(20, 50)},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Amounts(ByCount(c.total, c.count, c.rounding)), c.amounts) << c.total << " by " << c.count;
  }
  const std::vector<double> none = Amounts(ByCount(10000, 3, None));
  ASSERT_EQ(none.size(), 4u);
  EXPECT_EQ(none[0], 3333.33);
  EXPECT_NEAR(none[3], 0.01, 1e-9);
}

TEST(Schedule, TermsWithoutAnEndFail) {
  EXPECT_EQ(ErrorOf(ByCount(10000, 0, InstalmentRounding::NearOneRupee)), 11);
  EXPECT_EQ(ErrorOf(ByCount(2, 5, InstalmentRounding::NearOneRupee)), 13);  // 0.4 by "####" is an empty text
  EXPECT_EQ(ErrorOf(LumpSum(100, 0)), 5);
  EXPECT_EQ(ErrorOf(LumpSum(100, -5)), 5);
  EXPECT_EQ(ErrorOf(LumpSum(1e9, 0.01)), 6);
  EXPECT_TRUE(Amounts(LumpSum(0, 10)).empty());
  EXPECT_TRUE(Amounts(LumpSum(-1, 10)).empty());
}

// Principal is conserved whatever the terms; no row is above the instalment, none is 0 or below.
TEST(Schedule, RandomTermsAddUpToTheTotal) {
  std::mt19937 random(20261122);
  std::uniform_int_distribution<int> paise(100, 50'000'000), counts(1, 360), roundings(0, 3), rates(0, 3);
  for (int run = 0; run < 500; ++run) {
    ScheduleTerms terms =
        ByCount(paise(random) / 100.0, counts(random), static_cast<InstalmentRounding>(roundings(random)));
    if (terms.total / terms.count < 1) continue;
    terms.reducingRate = rates(random) / 2.0;
    double principal = 0;
    const double instalment = InstalmentOf(terms);
    for (const ScheduleRow& row : GenerateSchedule(terms)) {
      const double part = row.emiAmount - row.interest.value_or(0);
      EXPECT_GT(part, 0);
      EXPECT_LE(part, instalment + 1e-6);
      principal += part;
    }
    EXPECT_NEAR(principal, terms.total, 0.001) << "count " << terms.count;
  }
}

TEST(SpreadOver, SharesGoUpToAWholeRupeeAndTheLastMonthsTakeTheRest) {
  const auto spread = [](std::vector<double> amounts, double total) {
    std::vector<OpenMonth> months;
    for (double amount : amounts) months.push_back({kApr2026 + static_cast<long>(months.size()), amount});
    std::vector<double> after;
    for (const OpenMonth& month : SpreadOver(months, total)) after.push_back(month.modifiedAmount);
    return after;
  };
  EXPECT_EQ(spread({1000, 1000, 1000}, 300), (std::vector<double>{1100, 1100, 1100}));
  EXPECT_EQ(spread({1000, 1000, 1000}, 10), (std::vector<double>{1004, 1004, 1002}));
  EXPECT_EQ(spread({1000, 500, 200, 200}, 5), (std::vector<double>{1002, 502, 201, 200}));
  EXPECT_EQ(spread({700, 700}, 1000.5), (std::vector<double>{1201, 1199.5}));  // 500.25 goes up to 501
  EXPECT_EQ(spread({700}, 0), (std::vector<double>{700}));
  EXPECT_TRUE(spread({}, 100).empty());
}

// Whatever the range, a month is due when a whole number of steps lies between it and the first one.
TEST(Schedule, APremiumIsDueInEveryStepOfItsRangeAndInNoOtherMonth) {
  using enum PremiumPeriod;
  for (const PremiumPeriod period : {Monthly, Quarterly, HalfYearly, Yearly}) {
    for (long last = kApr2026 - 1; last < kApr2026 + 40; ++last) {
      std::vector<long> due;
      for (long month = kApr2026; month <= last; ++month) {
        if ((month - kApr2026) % static_cast<long>(period) == 0) due.push_back(month);
      }
      EXPECT_EQ(PremiumMonths({500, kApr2026, last, period}), due) << static_cast<long>(period) << last;
      EXPECT_EQ(PeriodOf(due), due.size() < 2 ? Monthly : period);
    }
  }
}

}  // namespace
}  // namespace ktl
