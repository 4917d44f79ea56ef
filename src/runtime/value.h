#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "runtime/date.h"

namespace ktl {

struct Empty {
  bool operator==(const Empty&) const = default;
};
struct Null {
  bool operator==(const Null&) const = default;
};

// What a database field, a control or an expression holds. Empty is a value never assigned: 0, "" or false
// when converted. Null is the database's null: it converts to nothing and the conversions below raise error
// 94 for it.
class Value {
 public:
  Value() = default;
  Value(Empty) {}
  Value(Null null) : held_(null) {}
  Value(bool b) : held_(b) {}
  Value(int i) : held_(std::int64_t{i}) {}
  Value(long i) : held_(std::int64_t{i}) {}
  Value(long long i) : held_(std::int64_t{i}) {}
  Value(double d) : held_(d) {}
  Value(const Date& d) : held_(d) {}
  Value(std::string s) : held_(std::move(s)) {}
  Value(std::string_view s) : held_(std::string(s)) {}
  Value(const char* s) : held_(std::string(s)) {}

  bool IsEmpty() const { return std::holds_alternative<Empty>(held_); }
  bool IsNull() const { return std::holds_alternative<Null>(held_); }
  bool IsBoolean() const { return std::holds_alternative<bool>(held_); }
  bool IsInteger() const { return std::holds_alternative<std::int64_t>(held_); }
  bool IsDouble() const { return std::holds_alternative<double>(held_); }
  bool IsNumber() const { return IsInteger() || IsDouble(); }
  bool IsDate() const { return std::holds_alternative<Date>(held_); }
  bool IsText() const { return std::holds_alternative<std::string>(held_); }

  // The held alternative as it is; the caller has asked which one it is.
  bool boolean() const { return std::get<bool>(held_); }
  std::int64_t integer() const { return std::get<std::int64_t>(held_); }
  double real() const { return std::get<double>(held_); }
  const Date& date() const { return std::get<Date>(held_); }
  const std::string& text() const { return std::get<std::string>(held_); }

  // Conversions of the run-time. A text must be a number (date, boolean) as a whole, else error 13.
  double ToDouble() const;
  std::int32_t ToLong() const;  // half to even; error 6 outside 32 bits
  std::int16_t ToInt() const;   // half to even; error 6 outside 16 bits
  bool ToBoolean() const;       // "True", "False" in any case, or a number
  Date ToDate() const;
  // "True"/"False"; numbers with at most 15 significant digits; dates "dd/MM/yyyy", with the time when there
  // is one.
  std::string ToText() const;

  // The same with null read as nothing: 0, "", false.
  double NumberOr0() const;
  std::string TextOrEmpty() const;

  bool operator==(const Value&) const = default;

 private:
  std::variant<Empty, Null, bool, std::int64_t, double, Date, std::string> held_;
};

}  // namespace ktl
