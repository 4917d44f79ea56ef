#pragma once

#include <exception>
#include <string>
#include <utility>

namespace ktl {

// A failure of the run-time: a number and a description, as error boxes show them.
class RuntimeError : public std::exception {
 public:
  RuntimeError(long number, std::string description)
      : number_(number), description_(std::move(description)) {}

  long number() const noexcept { return number_; }
  const std::string& description() const noexcept { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

  static RuntimeError InvalidProcedureCall() { return {5, "Invalid procedure call or argument"}; }
  static RuntimeError Overflow() { return {6, "Overflow"}; }
  static RuntimeError SubscriptOutOfRange() { return {9, "Subscript out of range"}; }
  static RuntimeError DivisionByZero() { return {11, "Division by zero"}; }
  static RuntimeError TypeMismatch() { return {13, "Type mismatch"}; }
  static RuntimeError InvalidUseOfNull() { return {94, "Invalid use of Null"}; }

 private:
  long number_;
  std::string description_;
};

}  // namespace ktl
