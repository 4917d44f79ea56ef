#pragma once

#include <cstdint>
#include <vector>

#include "company/table_catalogue.h"
#include "runtime/value.h"

namespace ktl {

// How many rows, and a sum over what is in them that does not ask for their order: servers give rows without
// a key in any. Numbers count as what their column holds, however a database hands them out.
class RowSum final {
 public:
  void Add(const std::vector<Value>& row);

  std::int64_t rows() const { return rows_; }
  bool operator==(const RowSum&) const = default;

 private:
  std::int64_t rows_ = 0;
  std::uint64_t sum_ = 0;
};

// A value as the company's tables hold it, from whatever a database has handed out.
Value AsHeld(ColumnKind kind, Value value);

}  // namespace ktl
