#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ktl::tsql {

enum class TokenKind { Name, Keyword, Variable, Number, Text, Symbol, End };

// Words that can be neither a name nor an alias unless they stand in brackets.
enum class Keyword : std::uint8_t {
  None,
  Add,
  All,
  Alter,
  And,
  As,
  Asc,
  Begin,
  Between,
  By,
  Case,
  Collate,
  Constraint,
  Convert,
  Create,
  Cross,
  Declare,
  Default,
  Delete,
  Desc,
  Distinct,
  Drop,
  Else,
  End,
  Escape,
  Exec,
  Execute,
  Exists,
  From,
  Full,
  Group,
  Having,
  If,
  In,
  Inner,
  Insert,
  Into,
  Is,
  Join,
  Key,
  Left,
  Like,
  Not,
  Null,
  On,
  Or,
  Order,
  Outer,
  Over,
  Percent,
  Primary,
  Right,
  Select,
  Set,
  Table,
  Then,
  Top,
  Union,
  Update,
  Values,
  View,
  When,
  Where,
};

struct Token {
  TokenKind kind = TokenKind::End;
  Keyword keyword = Keyword::None;
  std::string_view text;  // a name without its brackets; a text with its quotes
  std::size_t offset = 0;
};

// The longest text that is taken; nothing that the program says comes near it.
inline constexpr std::size_t kMaxTextLength = 500'000;

// The tokens view the text, which must outlive them; the last one is End. A text made of a said one by
// sharing its numbers has that many parameters ?1, ?2, ...; they are numbers, "?2." one with decimals.
std::vector<Token> Tokenize(std::string_view text, int parameters = 0);

// Throws DatabaseError: why, the line and column (from 1), and the text around the place.
[[noreturn]] void Refuse(std::string_view text, std::size_t offset, const std::string& why);

}  // namespace ktl::tsql
