#include "instructions/instruction_statements.h"

#include <gtest/gtest.h>

namespace ktl {
namespace {

TEST(SqlAmount, HasFifteenDigitsAndNoExponent) {
  const std::pair<double, const char*> cases[] = {
      {0, "0"},
      {-0.0, "-0"},
      {1200, "1200"},
      {100.5, "100.5"},
      {-0.05, "-0.05"},
      {0.1 + 0.2, "0.3"},
      {1.0 / 3, "0.333333333333333"},
      {2.675, "2.675"},
      {99999.99, "99999.99"},
      {9999999999999.99, "9999999999999.99"},
      {1e15, "1000000000000000.000000"},
      {1e-13, "0.000000"},
  };
  for (const auto& [amount, text] : cases) EXPECT_EQ(SqlAmount(amount), text);
}

}  // namespace
}  // namespace ktl
