#include "runtime/value.h"

#include <gtest/gtest.h>

#include <functional>

#include "runtime/errors.h"
#include "support/errors.h"

namespace ktl {
namespace {

constexpr long kOverflow = 6;
constexpr long kTypeMismatch = 13;
constexpr long kNullUsed = 94;

const Date kApril = *Date::FromYmd(2010, 4, 1);

TEST(Values, ConvertToNumbers) {
  EXPECT_EQ(Value().ToDouble(), 0);
  EXPECT_EQ(Value(true).ToDouble(), -1);
  EXPECT_EQ(Value("1,200.50").ToDouble(), 1200.5);
  EXPECT_EQ(Value(kApril).ToDouble(), 40269);
  EXPECT_EQ(Value(2.5).ToLong(), 2);
  EXPECT_EQ(Value("3.5").ToLong(), 4);
  EXPECT_EQ(Value(-2147483648.0).ToLong(), -2147483648LL);
  EXPECT_EQ(Value(32767).ToInt(), 32767);
  EXPECT_EQ(ErrorOf([] { Value(32768).ToInt(); }), kOverflow);
  EXPECT_EQ(ErrorOf([] { Value(2147483647.5).ToLong(); }), kOverflow);
  EXPECT_EQ(ErrorOf([] { Value("").ToDouble(); }), kTypeMismatch);
  EXPECT_EQ(ErrorOf([] { Value("12ab").ToLong(); }), kTypeMismatch);
}

TEST(Values, ConvertToBooleans) {
  EXPECT_TRUE(Value("tRUE").ToBoolean());
  EXPECT_FALSE(Value("False").ToBoolean());
  EXPECT_TRUE(Value("-1").ToBoolean());
  EXPECT_TRUE(Value(0.1).ToBoolean());
  EXPECT_FALSE(Value().ToBoolean());
  EXPECT_EQ(ErrorOf([] { Value("Yes").ToBoolean(); }), kTypeMismatch);
}

TEST(Values, ConvertToDates) {
  EXPECT_EQ(Value("1/4/2010").ToDate(), kApril);
  EXPECT_EQ(Value(40269).ToDate(), kApril);
  EXPECT_EQ(ErrorOf([] { Value("4/31/2010").ToDate(); }), kTypeMismatch);
  EXPECT_EQ(ErrorOf([] { Value("").ToDate(); }), kTypeMismatch);
}

TEST(Values, ConvertToTexts) {
  EXPECT_EQ(Value().ToText(), "");
  EXPECT_EQ(Value(true).ToText(), "True");
  EXPECT_EQ(Value(-7).ToText(), "-7");
  EXPECT_EQ(Value(1500.50).ToText(), "1500.5");
  EXPECT_EQ(Value(kApril).ToText(), "01/04/2010");
  EXPECT_EQ(Value(*Date::FromYmd(2010, 4, 1, 9, 5)).ToText(), "01/04/2010 09:05:00");
}

TEST(Values, NullConvertsToNothing) {
  const Value null = Null{};
  const std::function<void()> conversions[] = {[&] { null.ToDouble(); }, [&] { null.ToLong(); },
                                               [&] { null.ToBoolean(); }, [&] { null.ToDate(); },
                                               [&] { null.ToText(); }};
  for (const auto& convert : conversions) EXPECT_EQ(ErrorOf(convert), kNullUsed);
  EXPECT_EQ(null.NumberOr0(), 0);
  EXPECT_EQ(null.TextOrEmpty(), "");
  EXPECT_EQ(Value(2.5).NumberOr0(), 2.5);
}

}  // namespace
}  // namespace ktl
