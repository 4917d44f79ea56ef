#include "company/row_sum.h"

#include <cmath>
#include <limits>

#include "database/stored_date.h"

namespace ktl {

namespace {

// FNV-1a over the values with their kinds.
class Hash final {
 public:
  void Add(const Value& value) {
    if (value.IsInteger()) {
      AddNumber('i', value.integer());
    } else if (value.IsDouble()) {
      AddNumber('r', value.real() == 0 ? 0.0 : value.real());
    } else if (value.IsNull()) {
      AddBytes("n", 1);
    } else {
      const std::string text = value.IsDate() ? StoredDate(value.date()) : value.TextOrEmpty();
      AddNumber(value.IsDate() ? 'd' : 't', text.size());
      AddBytes(text.data(), text.size());
    }
  }
  std::uint64_t value() const { return value_; }

 private:
  template <typename Number>
  void AddNumber(char kind, Number number) {
    AddBytes(&kind, 1);
    AddBytes(&number, sizeof number);
  }
  void AddBytes(const void* bytes, std::size_t count) {
    const auto* byte = static_cast<const unsigned char*>(bytes);
    for (std::size_t i = 0; i < count; ++i) value_ = (value_ ^ byte[i]) * 0x100000001B3ULL;
  }
  std::uint64_t value_ = 0xCBF29CE484222325ULL;
};

}  // namespace

void RowSum::Add(const std::vector<Value>& row) {
  Hash hash;
  for (const auto& value : row) hash.Add(value);
  ++rows_;
  sum_ += hash.value();
}

Value AsHeld(ColumnKind kind, Value value) {
  constexpr double kExact = 9007199254740992.0;
  switch (kind) {
    case ColumnKind::Integer:
      if (value.IsDouble() && std::trunc(value.real()) == value.real() && std::fabs(value.real()) < kExact)
        return Value(static_cast<long long>(value.real()));
      break;
    case ColumnKind::Real:
      if (value.IsInteger()) return Value(static_cast<double>(value.integer()));
      break;
    case ColumnKind::Date:
    case ColumnKind::Moment:
      if (value.IsText())
        if (const auto date = FromStoredDate(value.text())) return Value(*date);
      break;
    default:
      break;
  }
  return value;
}

}  // namespace ktl
