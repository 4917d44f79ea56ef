#include "instructions/advloan_entry.h"

#include <gtest/gtest.h>

#include "instructions/instruction_type.h"
#include "support/errors.h"

namespace ktl {
namespace {

AdvLoanEntry Typed(TypedAdvLoan texts) {
  AdvLoanEntry entry;
  entry.ReadTyped(std::move(texts));
  return entry;
}

TEST(AdvLoanEntry, WhatIsTypedBecomesNumbersOnce) {
  const AdvLoanEntry entry = Typed({.serial = "2x",
                                    .name = "  Tour Advance ",
                                    .date = "5/11/2026",
                                    .amount = "12,34,567.89",
                                    .interest = "1e2",
                                    .instalment = "abc",
                                    .count = " 0",
                                    .recoverFrom = "12.2026"});
  EXPECT_EQ(entry.serial, 2);
  EXPECT_EQ(entry.name, "Tour Advance");
  EXPECT_EQ(entry.date, Date::FromYmd(2026, 11, 5));
  EXPECT_EQ(entry.Total(), 1234667.89);
  EXPECT_EQ(entry.instalment, 0);
  EXPECT_EQ(entry.count, 0.0);  // typed, unlike blanks
  EXPECT_EQ(entry.firstMonth, 2026 * 12 + 12);
  const AdvLoanEntry blank = Typed({.date = "31/02/2026", .count = "  ", .recoverFrom = "13/2026"});
  EXPECT_FALSE(blank.date || blank.count || blank.firstMonth != 0);
}

TEST(AdvLoanEntry, TheTermsFollowTheWayOfRecovery) {
  AdvLoanEntry entry = Typed({.amount = "900", .interest = "100", .instalment = "300", .count = "4"});
  entry.rules = {.INTRRATE = 2, .REDUCINGBALYN = true};
  entry.rounding = InstalmentRounding::NearTenRupee;
  EXPECT_EQ(GenerateSchedule(entry.Terms(false)).size(), 4u);  // 300, 300, 300, 100
  EXPECT_EQ(GenerateSchedule(entry.Terms(true)).front().interest, 20.0);
  entry.lumpSum = false;
  EXPECT_EQ(InstalmentOf(entry.Terms(false)), 250);
  EXPECT_EQ(ErrorOf([] { FactsOf(InstructionType::None); }), 5);
}

}  // namespace
}  // namespace ktl
