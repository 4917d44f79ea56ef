#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "formula/expression_functions.h"
#include "formula/expression_operators.h"
#include "runtime/value.h"

namespace ktl {

// An expression in the order in which a stack works it off.
struct ExpressionProgram {
  enum class Action : std::uint8_t { Push, Unary, Binary, Call, CallUnknown, UndefinedName };

  struct Step {
    Action action;
    Operator op = Operator::Add;
    std::uint32_t constant = 0;  // of Push; of CallUnknown and UndefinedName the constant that holds the name
    std::uint32_t arguments = 0;  // of the calls
    const ExpressionFunction* function = nullptr;
  };

  std::vector<Step> steps;
  std::vector<Value> constants;
};

// Reads an expression in upper case. Raises the ExpressionFault that stands leftmost.
ExpressionProgram ParseExpression(std::string_view text);

// Raises RuntimeError.
Value RunExpression(const ExpressionProgram& program, const std::function<Date()>& now);

}  // namespace ktl
