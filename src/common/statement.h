#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "runtime/date.h"

namespace ktl {

class clsSPChar;

// Text that may go to the database as it stands: a constant of the program, or what BuildStatement has made.
class Statement {
 public:
  Statement() = default;
  explicit Statement(std::string text) : text_(std::move(text)) {}

  const std::string& text() const { return text_; }
  operator std::string_view() const { return text_; }  // so that a connection takes it
  bool empty() const { return text_.empty(); }
  Statement& operator+=(const Statement& more) {
    text_ += more.text_;
    return *this;
  }
  friend Statement operator+(Statement first, const Statement& second) { return first += second; }

 private:
  std::string text_;
};

// What goes into one hole of a statement's text, by its type: a number as digits, an amount with a decimal
// point and never an exponent, a text with its quotes doubled (the quotes around it stand in the statement),
// a date as dd/Mmm/yyyy, another statement as it stands.
class StatementHole {
 public:
  template <typename Number>
  requires((std::is_integral_v<Number> && !std::is_same_v<Number, bool>) || std::is_enum_v<Number>)
      StatementHole(Number number)
      : text_(std::to_string(static_cast<long long>(number))) {}
  StatementHole(double amount);
  StatementHole(const Date& date);
  StatementHole(std::string_view typed) : text_(typed), typed_(true) {}
  StatementHole(const std::string& typed) : StatementHole(std::string_view(typed)) {}
  StatementHole(const char* typed) : StatementHole(std::string_view(typed)) {}
  StatementHole(const Statement& part) : text_(part.text()) {}
  StatementHole(bool) = delete;  // a flag is said as 0 or 1

  bool isTyped() const { return typed_; }  // by a person: the dialect of the literals counts
  void AppendTo(std::string& statement, const clsSPChar& literals) const;

 private:
  std::string text_;
  bool typed_ = false;
};

// The text with "{}", or "{0}" and on, filled in. A text with more holes than values is a mistake of the
// program and throws.
Statement BuildStatement(const clsSPChar& literals, std::string_view text,
                         std::initializer_list<StatementHole> holes);

// An amount as a statement takes it: a decimal point, never an exponent.
std::string SqlAmount(double amount);

}  // namespace ktl
