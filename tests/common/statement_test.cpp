#include "common/statement.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <tuple>

#include "common/sql_text.h"

namespace ktl {
namespace {

enum class Kind : int { Second = 2 };

TEST(StatementTest, HolesAreFilledByTheirTypes) {
  const Statement part("A = 1 Or B = 'x''y'");
  const std::tuple<const char*, StatementHole, const char*> cases[] = {
      // dialect, value, in the hole
      {"SQL", 17, "17"},
      {"SQL", -24121L, "-24121"},
      {"SQL", Kind::Second, "2"},
      {"SQL", 300.0, "300"},
      {"SQL", -0.0, "-0"},
      {"SQL", -1250.05, "-1250.05"},
      {"SQL", 0.1 + 0.2, "0.3"},
      {"SQL", 1.0 / 3, "0.333333333333333"},
      {"SQL", 9999999999999.99, "9999999999999.99"},
      {"SQL", 1e15, "1000000000000000.000000"},
      {"SQL", 0.00001, "0.000010"},
      {"SQL", *Date::FromYmd(2024, 4, 5), "05/Apr/2024"},
      {"SQL", "O'Brien", "O''Brien"},
      {"SQL", std::string("{0}'"), "{0}''"},
      {"MYSQL", std::string_view("a\\b"), "a\\\\b"},
      {"SQL", part, "A = 1 Or B = 'x''y'"},
  };
  for (const auto& [dialect, hole, filled] : cases) {
    EXPECT_EQ(BuildStatement(clsSPChar(dialect), "<{}>", {hole}).text(), "<" + std::string(filled) + ">");
  }
}

TEST(StatementTest, HolesMayBeNumberedButNeverMissing) {
  const clsSPChar literals("SQL");
  EXPECT_EQ(BuildStatement(literals, "({0},{1},{0})", {300.25, "a'b"}).text(), "(300.25,a''b,300.25)");
  EXPECT_EQ(BuildStatement(literals, "Select 1", {}).text(), "Select 1");
  EXPECT_THROW(BuildStatement(literals, "{} {}", {1}), std::runtime_error);
  EXPECT_FALSE((std::is_constructible_v<StatementHole, bool>));
}

}  // namespace
}  // namespace ktl
