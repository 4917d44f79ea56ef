#include "database/drivers/shared_text.h"

#include <gtest/gtest.h>

namespace ktl {
namespace {

TEST(ShareNumbers, TakesOperandsAndListedValuesOnly) {
  const struct {
    const char* said;
    const char* shared;
    std::vector<Value> numbers;
  } cases[] = {
      {"Select TOP 1 X From A Where E = 17 And M<=24121 And N <> 3 Order By 2",
       "Select TOP 1 X From A Where E = ?1 And M<=?2 And N <> ?3 Order By 2",
       {17, 24121, 3}},
      {"UPDATE A SET X = 1000.50, Y=-7,Z = - 8 WHERE B BETWEEN 1 AND -2.5 AND 4 = C",
       "UPDATE A SET X = ?1., Y=?2,Z = - 8 WHERE B BETWEEN ?3 AND ?4. AND 4 = C",
       {1000.5, -7, 1, -2.5}},
      {"INSERT INTO A (X, Y) VALUES (1, ROUND(2.5, 1), 'x', 3.25), (4, NULL, '5', (6))",
       "INSERT INTO A (X, Y) VALUES (?1, ROUND(2.5, 1), 'x', ?2.), (?3, NULL, '5', (6))",
       {1, 3.25, 4}},
      {"delete from [X = 5] where B = 'is = 5, isn''t = 6' and \"C = 7\" = 8",
       "delete from [X = 5] where B = 'is = 5, isn''t = 6' and \"C = 7\" = ?1",
       {8}},
      // Numbers of another form, too long or too fine to be read alike everywhere, or run into a word.
      {"SELECT 1 FROM A WHERE B = 2e3 AND C = .5 AND D = E01 AND F IN (5) AND G = 17And H = 1.",
       "SELECT 1 FROM A WHERE B = 2e3 AND C = .5 AND D = E01 AND F IN (5) AND G = 17And H = 1.",
       {}},
      {"SELECT 1 WHERE A = 1234567890123456 AND B = 0.12345 AND C = 123456789012345 AND D = 0.1234",
       "SELECT 1 WHERE A = 1234567890123456 AND B = 0.12345 AND C = ?1 AND D = ?2.",
       {123456789012345, 0.1234}},
      // Not a statement of the four kinds, with parameters or comments of its own, not closed.
      {"DECLARE @x INT SET @x = 5", "DECLARE @x INT SET @x = 5", {}},
      {"SELECT 1 WHERE A = 5 AND B = ?", "SELECT 1 WHERE A = 5 AND B = ?", {}},
      {"SELECT 1 WHERE A = 5 -- B = 6", "SELECT 1 WHERE A = 5 -- B = 6", {}},
      {"SELECT 1 WHERE A = 5 /* B */", "SELECT 1 WHERE A = 5 /* B */", {}},
      {"SELECT 1 WHERE A = 5 AND B = 'open", "SELECT 1 WHERE A = ?1 AND B = 'open", {5}},
      {"", "", {}},
  };
  SharedText shared;
  for (const auto& c : cases) {
    ShareNumbers(c.said, shared);
    EXPECT_EQ(shared.sql, c.shared);
    EXPECT_EQ(shared.numbers, c.numbers) << c.said;
  }
}

}  // namespace
}  // namespace ktl
