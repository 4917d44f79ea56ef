#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "runtime/text.h"

namespace ktl {

// The text of a formula, asked what it mentions.
class FormulaText final {
 public:
  explicit FormulaText(std::string text) : text_(std::move(text)), upper_(UpperCase(text_)) {}

  const std::string& text() const { return text_; }
  bool Mentions(std::string_view token) const { return upper_.find(UpperCase(token)) != upper_.npos; }
  bool MentionsExactly(std::string_view token) const { return text_.find(token) != text_.npos; }

 private:
  std::string text_;
  std::string upper_;
};

}  // namespace ktl
