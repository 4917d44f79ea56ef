#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string_view>

#include "runtime/date.h"
#include "runtime/value.h"

namespace ktl {

// What a function of the formula language is called with.
struct Arguments {
  std::span<const Value> values;
  const std::function<Date()>& now;

  std::size_t size() const { return values.size(); }
  const Value& operator[](std::size_t index) const { return values[index]; }
  // An argument that may be left out.
  long LongOr(std::size_t index, long fallback) const {
    return index < size() ? values[index].ToLong() : fallback;
  }
};

struct ExpressionFunction {
  enum class OfNull { Calls, IsNull };

  std::string_view name;  // in upper case
  std::size_t fewest;     // arguments
  std::size_t most;
  Value (*call)(const Arguments& arguments);
  OfNull ofNull = OfNull::Calls;  // IsNull: a null first argument gives null without a call
};

// Null pointer when there is no such function. The name is in upper case.
const ExpressionFunction* FindFunction(std::string_view name);

// The rooms of the library that FindFunction looks through.
std::span<const ExpressionFunction> LedgerFunctions();
std::span<const ExpressionFunction> NumberFunctions();
std::span<const ExpressionFunction> TextFunctions();
std::span<const ExpressionFunction> DateFunctions();

}  // namespace ktl
