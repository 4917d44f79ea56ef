#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ktl {

// A statement of the embedded dialect whose whole numbers behind "=" (and "<=", ">=") have become parameters:
// what is asked of one employee is prepared once for all of them.
struct SharedText {
  std::string sql;
  std::vector<std::int64_t> numbers;
};
SharedText ShareNumbers(std::string_view sql);

}  // namespace ktl
