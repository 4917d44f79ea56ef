#include "database/drivers/like_pattern.h"

#include "database/drivers/text_rules.h"

namespace ktl {
namespace {

bool IsPlain(char c) {
  return static_cast<unsigned char>(c) >= 0x80 || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') ||
         (c >= 'A' && c <= 'Z');
}

void AddEscaped(std::string& expression, std::string_view characters) {
  for (const char c : characters) {
    if (!IsPlain(c)) expression += '\\';
    expression += c;
  }
}

void AddLiteral(LikePattern& translated, std::string_view character) {
  AddEscaped(translated.expression, character);
  if (character == "%" || character == "_" || character == "\\") {
    translated.like += '\\';
    translated.escapes = true;
  }
  translated.like += character;
}

// The set without its brackets.
void AddSet(LikePattern& translated, std::string_view set) {
  if (CountCharacters(set) == 1) return AddLiteral(translated, set);
  translated.hasSets = true;
  translated.expression += '[';
  if (set.front() == '^') {
    translated.expression += '^';
    set.remove_prefix(1);
  }
  for (std::size_t i = 0; i < set.size(); ++i) {
    const bool range = set[i] == '-' && i > 0 && i + 1 < set.size();
    range ? translated.expression.push_back('-') : AddEscaped(translated.expression, set.substr(i, 1));
  }
  translated.expression += ']';
}

}  // namespace

LikePattern TranslateLike(std::string_view pattern, std::string_view escape) {
  LikePattern translated;
  translated.expression = "\\A(?s)";
  while (!pattern.empty()) {
    std::string_view character = Characters(pattern, 0, 1);
    const auto close = character == "[" ? pattern.find(']', 2) : pattern.npos;
    if (!escape.empty() && character == escape && pattern.size() > escape.size()) {
      pattern.remove_prefix(escape.size());
      character = Characters(pattern, 0, 1);
      AddLiteral(translated, character);
    } else if (close != pattern.npos) {
      AddSet(translated, pattern.substr(1, close - 1));
      character = pattern.substr(0, close + 1);
    } else if (character == "%" || character == "_") {
      translated.like += character;
      translated.expression += character == "%" ? ".*" : ".";
    } else {
      AddLiteral(translated, character);
    }
    pattern.remove_prefix(character.size());
  }
  translated.expression += "\\z";
  return translated;
}

}  // namespace ktl
