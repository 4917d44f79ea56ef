#include "database/tsql/lexer.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "database/database_error.h"

namespace ktl::tsql {

namespace {

struct Word {
  std::string_view text;
  Keyword keyword;
};

// In alphabetical order, for the binary search.
constexpr std::array kWords{
    Word{"ADD", Keyword::Add},         Word{"ALL", Keyword::All},
    Word{"ALTER", Keyword::Alter},     Word{"AND", Keyword::And},
    Word{"AS", Keyword::As},           Word{"ASC", Keyword::Asc},
    Word{"BEGIN", Keyword::Begin},     Word{"BETWEEN", Keyword::Between},
    Word{"BY", Keyword::By},           Word{"CASE", Keyword::Case},
    Word{"COLLATE", Keyword::Collate}, Word{"CONSTRAINT", Keyword::Constraint},
    Word{"CONVERT", Keyword::Convert}, Word{"CREATE", Keyword::Create},
    Word{"CROSS", Keyword::Cross},     Word{"DECLARE", Keyword::Declare},
    Word{"DEFAULT", Keyword::Default}, Word{"DELETE", Keyword::Delete},
    Word{"DESC", Keyword::Desc},       Word{"DISTINCT", Keyword::Distinct},
    Word{"DROP", Keyword::Drop},       Word{"ELSE", Keyword::Else},
    Word{"END", Keyword::End},         Word{"ESCAPE", Keyword::Escape},
    Word{"EXEC", Keyword::Exec},       Word{"EXECUTE", Keyword::Execute},
    Word{"EXISTS", Keyword::Exists},   Word{"FROM", Keyword::From},
    Word{"FULL", Keyword::Full},       Word{"GROUP", Keyword::Group},
    Word{"HAVING", Keyword::Having},   Word{"IF", Keyword::If},
    Word{"IN", Keyword::In},           Word{"INNER", Keyword::Inner},
    Word{"INSERT", Keyword::Insert},   Word{"INTO", Keyword::Into},
    Word{"IS", Keyword::Is},           Word{"JOIN", Keyword::Join},
    Word{"KEY", Keyword::Key},         Word{"LEFT", Keyword::Left},
    Word{"LIKE", Keyword::Like},       Word{"NOT", Keyword::Not},
    Word{"NULL", Keyword::Null},       Word{"ON", Keyword::On},
    Word{"OR", Keyword::Or},           Word{"ORDER", Keyword::Order},
    Word{"OUTER", Keyword::Outer},     Word{"OVER", Keyword::Over},
    Word{"PERCENT", Keyword::Percent}, Word{"PRIMARY", Keyword::Primary},
    Word{"RIGHT", Keyword::Right},     Word{"SELECT", Keyword::Select},
    Word{"SET", Keyword::Set},         Word{"TABLE", Keyword::Table},
    Word{"THEN", Keyword::Then},       Word{"TOP", Keyword::Top},
    Word{"UNION", Keyword::Union},     Word{"UPDATE", Keyword::Update},
    Word{"VALUES", Keyword::Values},   Word{"VIEW", Keyword::View},
    Word{"WHEN", Keyword::When},       Word{"WHERE", Keyword::Where},
};
static_assert(std::ranges::is_sorted(kWords, {}, &Word::text));

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool BeginsName(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '#' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool ContinuesName(char c) { return BeginsName(c) || IsDigit(c) || c == '$' || c == '@'; }

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

Keyword KeywordOf(std::string_view name) {
  std::array<char, 10> upper{};
  if (name.size() > upper.size()) return Keyword::None;
  std::ranges::transform(name, upper.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
  const std::string_view word(upper.data(), name.size());
  const auto found = std::ranges::lower_bound(kWords, word, {}, &Word::text);
  return found != kWords.end() && found->text == word ? found->keyword : Keyword::None;
}

class Lexer {
 public:
  Lexer(std::string_view text, int parameters) : text_(text), parameters_(parameters) {}

  std::vector<Token> Run() {
    std::vector<Token> tokens;
    tokens.reserve(text_.size() / 4 + 4);
    while (SkipBlanks()) tokens.push_back(Next());
    tokens.push_back({TokenKind::End, Keyword::None, {}, text_.size()});
    return tokens;
  }

 private:
  char Peek(std::size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }

  // False at the end of the text. Comments count as blanks.
  bool SkipBlanks() {
    while (at_ < text_.size()) {
      if (IsBlank(text_[at_])) {
        ++at_;
      } else if (text_.substr(at_, 2) == "--") {
        at_ = std::min(text_.find('\n', at_), text_.size());
      } else if (text_.substr(at_, 2) == "/*") {
        const auto end = text_.find("*/", at_ + 2);
        if (end == std::string_view::npos) Refuse(text_, at_, "the comment is not closed");
        at_ = end + 2;
      } else {
        return true;
      }
    }
    return false;
  }

  Token Next() {
    const char c = Peek();
    if (c == '\'') return Text(at_);
    if ((c == 'N' || c == 'n') && Peek(1) == '\'') {
      ++at_;
      return Text(at_ - 1);
    }
    if (c == '[') return Quoted(']');
    if (c == '"') return Quoted('"');
    if (IsDigit(c) || (c == '.' && IsDigit(Peek(1)))) return Number();
    if (c == '@' || BeginsName(c)) return Word();
    if (c == '?' && parameters_ > 0) return Parameter();
    return Symbol();
  }

  Token Make(TokenKind kind, std::size_t begin) const {
    return {kind, Keyword::None, text_.substr(begin, at_ - begin), begin};
  }

  Token Text(std::size_t offset) {
    const std::size_t begin = at_++;
    for (;; ++at_) {
      if (at_ >= text_.size()) Refuse(text_, offset, "the text is not closed");
      if (text_[at_] == '\0') Refuse(text_, at_, "a text holds no character of code 0");
      if (text_[at_] != '\'') continue;
      if (Peek(1) != '\'') break;
      ++at_;
    }
    ++at_;
    return Make(TokenKind::Text, begin);
  }

  Token Quoted(char close) {
    const std::size_t begin = at_;
    const auto end = text_.find(close, at_ + 1);
    if (end == std::string_view::npos) Refuse(text_, begin, "the name is not closed");
    const auto name = text_.substr(begin + 1, end - begin - 1);
    at_ = end + 1;
    if (name.empty() || Peek() == close || name.find_first_of(std::string_view("]\0", 2)) != name.npos)
      Refuse(text_, begin, "no such name is possible");
    return {TokenKind::Name, Keyword::None, name, begin};
  }

  // Ends at the first letter that is not its exponent: 17And is two tokens.
  Token Number() {
    const std::size_t begin = at_;
    while (IsDigit(Peek())) ++at_;
    if (Peek() == '.') ++at_;
    while (IsDigit(Peek())) ++at_;
    if (Peek() == 'e' || Peek() == 'E') {
      const std::size_t sign = Peek(1) == '+' || Peek(1) == '-' ? 1 : 0;
      if (IsDigit(Peek(1 + sign))) {
        at_ += 1 + sign;
        while (IsDigit(Peek())) ++at_;
      }
    }
    Token token = Make(TokenKind::Number, begin);
    double value = 0;
    const auto result = std::from_chars(token.text.data(), token.text.data() + token.text.size(), value);
    if (result.ec == std::errc::result_out_of_range && token.text.find('-') == std::string_view::npos)
      Refuse(text_, begin, "the number is too large");
    return token;
  }

  Token Parameter() {
    const std::size_t begin = at_++;
    while (IsDigit(Peek())) ++at_;
    if (Peek() == '.') ++at_;
    return Make(TokenKind::Number, begin);
  }

  Token Word() {
    const std::size_t begin = at_++;
    while (at_ < text_.size() && ContinuesName(text_[at_])) ++at_;
    Token token = Make(text_[begin] == '@' ? TokenKind::Variable : TokenKind::Name, begin);
    if (token.kind == TokenKind::Name) token.keyword = KeywordOf(token.text);
    if (token.keyword != Keyword::None) token.kind = TokenKind::Keyword;
    return token;
  }

  Token Symbol() {
    const std::size_t begin = at_;
    const std::string_view pair = text_.substr(at_, 2);
    if (pair == "<>" || pair == "<=" || pair == ">=" || pair == "!=") {
      at_ += 2;
    } else if (std::string_view("+-*/%=<>(),.;").find(Peek()) != std::string_view::npos && Peek() != '\0') {
      ++at_;
    } else {
      Refuse(text_, at_, "the character is unknown");
    }
    return Make(TokenKind::Symbol, begin);
  }

  std::string_view text_;
  int parameters_;
  std::size_t at_ = 0;
};

}  // namespace

std::vector<Token> Tokenize(std::string_view text, int parameters) {
  if (text.size() > kMaxTextLength)
    throw DatabaseError(fmt::format("The statement is too long: {} characters, at most {} are taken.",
                                    text.size(), kMaxTextLength));
  return Lexer(text, parameters).Run();
}

void Refuse(std::string_view text, std::size_t offset, const std::string& why) {
  constexpr std::size_t kAround = 30;
  const std::string_view before = text.substr(0, offset);
  const auto line = 1 + std::ranges::count(before, '\n');
  const auto lineBegin = before.rfind('\n') == before.npos ? 0 : before.rfind('\n') + 1;
  const std::size_t from = offset > kAround ? offset - kAround : 0;
  std::string place(text.substr(from, offset - from + kAround));
  std::ranges::replace_if(
      place, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  throw DatabaseError(fmt::format("The statement cannot be read at line {}, column {}: {}, near \"{}\".",
                                  line, offset - lineBegin + 1, why, place),
                      kStatementError);
}

}  // namespace ktl::tsql
