#include "database/drivers/shared_text.h"

#include <gtest/gtest.h>

namespace ktl {
namespace {

TEST(ShareNumbers, TakesWholeNumbersBehindComparisonsOnly) {
  const struct {
    const char* sql;
    const char* shared;
    std::vector<std::int64_t> numbers;
  } cases[] = {
      {"SELECT 1 FROM [A] WHERE [E] = 17 And [M] <= 24121 LIMIT 1",
       "SELECT 1 FROM [A] WHERE [E] = ? And [M] <= ? LIMIT 1",
       {17, 24121}},
      {"SELECT [X = 5] FROM A WHERE B = 'is = 5, isn''t = 6' AND C = 7 ORDER BY 2",
       "SELECT [X = 5] FROM A WHERE B = 'is = 5, isn''t = 6' AND C = ? ORDER BY 2",
       {7}},
      {"WHERE A = 1.5 AND B = 2e3 AND C = E01 AND D > 4 AND F IN (5) AND G = -6",
       "WHERE A = 1.5 AND B = 2e3 AND C = E01 AND D > 4 AND F IN (5) AND G = -6",
       {}},
      {"WHERE A = 99999999999999999999", "WHERE A = 99999999999999999999", {}},
      {"WHERE A = 5 AND B = ?", "WHERE A = 5 AND B = ?", {}},
      {"WHERE A = 5 AND B = 'open", "WHERE A = ? AND B = 'open", {5}},
  };
  for (const auto& c : cases) {
    const SharedText shared = ShareNumbers(c.sql);
    EXPECT_EQ(shared.sql, c.shared);
    EXPECT_EQ(shared.numbers, c.numbers) << c.sql;
  }
}

}  // namespace
}  // namespace ktl
