#include <span>
#include <utility>

#include "formula/expression_faults.h"
#include "formula/expression_program.h"

namespace ktl {
namespace {

using Action = ExpressionProgram::Action;
using Step = ExpressionProgram::Step;

// What all texts of one evaluation may take together.
constexpr std::size_t kTextBudget = std::size_t{64} << 20;

Value Call(const ExpressionFunction& function, const Arguments& arguments) {
  if (arguments.size() < function.fewest || arguments.size() > function.most)
    throw Fault(ExpressionFault::WrongArgumentCount, "Wrong number of arguments", function.name);
  const bool isNull = function.ofNull == ExpressionFunction::OfNull::IsNull && arguments[0].IsNull();
  return isNull ? Value(Null()) : function.call(arguments);
}

class Machine {
 public:
  Machine(const ExpressionProgram& program, const std::function<Date()>& now)
      : program_(program), now_(now) {}

  Value Run() {
    stack_.reserve(8);
    for (const Step& step : program_.steps) {
      Do(step);
      CheckBudget(stack_.back());
    }
    return std::move(stack_.back());
  }

 private:
  void Do(const Step& step);
  void CallFunction(const Step& step);
  void CheckBudget(const Value& made);
  const std::string& NameOf(const Step& step) const { return program_.constants[step.constant].text(); }

  const ExpressionProgram& program_;
  const std::function<Date()>& now_;
  std::vector<Value> stack_;
  std::size_t textMade_ = 0;
};

void Machine::Do(const Step& step) {
  switch (step.action) {
    case Action::Push:
      stack_.push_back(program_.constants[step.constant]);
      return;
    case Action::Unary:
      stack_.back() = step.op == Operator::Negate ? Negate(stack_.back()) : Not(stack_.back());
      return;
    case Action::Binary: {
      Value& left = stack_[stack_.size() - 2];
      left = Apply(step.op, left, stack_.back());
      stack_.pop_back();
      return;
    }
    case Action::Call:
      return CallFunction(step);
    case Action::CallUnknown:
      throw Fault(ExpressionFault::UnknownFunction, "Unknown function", NameOf(step));
    case Action::UndefinedName:
      throw Fault(ExpressionFault::UndefinedName, "Variable is undefined", NameOf(step));
  }
}

void Machine::CallFunction(const Step& step) {
  const std::size_t first = stack_.size() - step.arguments;
  Value result = Call(*step.function, {std::span<const Value>(stack_).subspan(first), now_});
  stack_.resize(first);
  stack_.push_back(std::move(result));
}

void Machine::CheckBudget(const Value& made) {
  if (!made.IsText()) return;
  textMade_ += made.text().size();
  if (textMade_ > kTextBudget) throw RuntimeError::Overflow();
}

}  // namespace

Value RunExpression(const ExpressionProgram& program, const std::function<Date()>& now) {
  return Machine(program, now).Run();
}

}  // namespace ktl
