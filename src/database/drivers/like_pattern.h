#pragma once

#include <string>
#include <string_view>

namespace ktl {

// A pattern of LIKE for a database that knows "%" and "_" but no sets of characters.
struct LikePattern {
  std::string like;             // the sets of one character written out
  bool escapes = false;         // the backslash takes the next character as it stands
  bool hasSets = false;         // other sets are in it: only the expression tells them
  std::string expression = {};  // a regular one, for the whole text
};

// escape: a character that takes the next one as it stands; "" for none.
LikePattern TranslateLike(std::string_view pattern, std::string_view escape);

}  // namespace ktl
