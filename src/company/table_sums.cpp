#include <fmt/format.h>
#include <sqlite3.h>

#include "company/company.h"

namespace ktl {
namespace {

// FNV-1a over the values with their kinds.
class Checksum final {
 public:
  void Add(sqlite3_stmt* row, int column) {
    const int kind = sqlite3_column_type(row, column);
    AddBytes(&kind, 1);
    if (kind == SQLITE_INTEGER) {
      const sqlite3_int64 value = sqlite3_column_int64(row, column);
      AddBytes(&value, sizeof value);
    } else if (kind == SQLITE_FLOAT) {
      const double value = sqlite3_column_double(row, column);
      AddBytes(&value, sizeof value);
    } else if (kind != SQLITE_NULL) {
      AddBytes(sqlite3_column_text(row, column), static_cast<std::size_t>(sqlite3_column_bytes(row, column)));
    }
  }
  std::uint64_t value() const { return value_; }

 private:
  void AddBytes(const void* bytes, std::size_t count) {
    const auto* byte = static_cast<const unsigned char*>(bytes);
    for (std::size_t i = 0; i < count; ++i) value_ = (value_ ^ byte[i]) * 0x100000001B3ULL;
  }
  std::uint64_t value_ = 0xCBF29CE484222325ULL;
};

TableSum SumOf(RawDatabase& database, const std::string& table) {
  // Rows were added in the order of their keys.
  RawStatement rows(database, fmt::format("SELECT * FROM {} ORDER BY rowid", table));
  const int columns = sqlite3_column_count(rows.handle());
  TableSum sum{table, 0, 0};
  Checksum checksum;
  while (rows.Step()) {
    ++sum.rows;
    for (int column = 0; column < columns; ++column) checksum.Add(rows.handle(), column);
  }
  sum.checksum = checksum.value();
  return sum;
}

}  // namespace

std::vector<TableSum> TableSums(RawDatabase& database) {
  std::vector<TableSum> sums;
  for (const auto& table : database.Column("SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT "
                                           "LIKE 'sqlite_%' ORDER BY name")) {
    sums.push_back(SumOf(database, table));
  }
  return sums;
}

}  // namespace ktl
