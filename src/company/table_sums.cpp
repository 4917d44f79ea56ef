#include <fmt/format.h>

#include "company/company.h"

namespace ktl {
namespace {

// FNV-1a over the values with their kinds.
class Checksum final {
 public:
  void Add(const Value& value) {
    if (value.IsNull()) return AddKind(Kind::Null);
    if (value.IsInteger()) {
      AddKind(Kind::Integer);
      const std::int64_t number = value.integer();
      AddBytes(&number, sizeof number);
    } else if (value.IsDouble()) {
      AddKind(Kind::Real);
      const double number = value.real();
      AddBytes(&number, sizeof number);
    } else {
      AddKind(Kind::Text);
      AddBytes(value.text().data(), value.text().size());
    }
  }
  std::uint64_t value() const { return value_; }

 private:
  enum class Kind : unsigned char { Integer = 1, Real, Text, Null = 5 };

  void AddKind(Kind kind) { AddBytes(&kind, 1); }
  void AddBytes(const void* bytes, std::size_t count) {
    const auto* byte = static_cast<const unsigned char*>(bytes);
    for (std::size_t i = 0; i < count; ++i) value_ = (value_ ^ byte[i]) * 0x100000001B3ULL;
  }
  std::uint64_t value_ = 0xCBF29CE484222325ULL;
};

TableSum SumOf(SqliteDatabase& database, const std::string& table) {
  // Rows were added in the order of their keys.
  SqliteStatement rows(database.handle(), fmt::format("SELECT * FROM {} ORDER BY rowid", table));
  const std::size_t columns = rows.ColumnCount();
  TableSum sum{table, 0, 0};
  Checksum checksum;
  while (rows.Step()) {
    ++sum.rows;
    for (std::size_t column = 0; column < columns; ++column) checksum.Add(rows.Column(column));
  }
  sum.checksum = checksum.value();
  return sum;
}

}  // namespace

std::vector<TableSum> TableSums(SqliteDatabase& database) {
  std::vector<TableSum> sums;
  for (const auto& table : FirstColumn(database,
                                       "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT "
                                       "LIKE 'sqlite_%' ORDER BY name")) {
    sums.push_back(SumOf(database, table));
  }
  return sums;
}

}  // namespace ktl
