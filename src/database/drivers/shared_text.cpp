#include "database/drivers/shared_text.h"

#include <array>
#include <charconv>
#include <cstdint>

#include "database/tsql/words.h"

namespace ktl {
namespace {

// Up to here the database's own reading of a decimal literal is the nearest double, as ours is.
constexpr std::size_t kMostDigits = 15;
constexpr std::size_t kMostDecimals = 4;

enum CharClass : unsigned char { kOther, kBlank, kDigit, kName, kQuote };

constexpr std::array<CharClass, 256> kClasses = [] {
  std::array<CharClass, 256> classes{};
  for (std::size_t c = 0; c < classes.size(); ++c) {
    if (c == ' ' || (c >= '\t' && c <= '\r')) classes[c] = kBlank;
    if (c >= '0' && c <= '9') classes[c] = kDigit;
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c >= 0x80) classes[c] = kName;
    if (c == '_' || c == '@' || c == '#' || c == '$') classes[c] = kName;
    if (c == '\'' || c == '"' || c == '[') classes[c] = kQuote;
  }
  return classes;
}();

CharClass ClassOf(char c) { return kClasses[static_cast<unsigned char>(c)]; }

bool IsShareable(std::string_view sql) {
  std::size_t begin = 0;
  while (begin < sql.size() && ClassOf(sql[begin]) == kBlank) ++begin;
  for (const std::string_view word : {"SELECT", "UPDATE", "INSERT", "DELETE"})
    if (tsql::SameWord(sql.substr(begin, word.size()), word)) return true;
  return false;
}

class Sharer {
 public:
  Sharer(std::string_view sql, SharedText& shared) : sql_(sql), shared_(shared) {}

  // False when there is something in the text that only a full reading could judge.
  bool Run() {
    while (at_ < sql_.size()) {
      const std::size_t begin = at_;
      switch (ClassOf(sql_[at_])) {
        case kQuote:
          SkipQuoted();
          operandExpected_ = false;
          break;
        case kName:
          SkipName();
          TakeName(sql_.substr(begin, at_ - begin));
          break;
        case kDigit:
          TakeNumber(begin);
          break;
        case kBlank:
          ++at_;
          break;
        case kOther:
          if (!TakeSymbol()) return false;
          break;
      }
    }
    Copy(sql_.size());
    return true;
  }

 private:
  char Peek(std::size_t at) const { return at < sql_.size() ? sql_[at] : '\0'; }

  // Everything up to there that has not been written yet.
  void Copy(std::size_t end) {
    shared_.sql.append(sql_, copied_, end - copied_);
    copied_ = end;
  }

  // A quote inside a literal is doubled and so ends it twice.
  void SkipQuoted() {
    const std::size_t end = sql_.find(sql_[at_] == '[' ? ']' : sql_[at_], at_ + 1);
    at_ = end == sql_.npos ? sql_.size() : end + 1;
  }

  void SkipName() {
    while (at_ < sql_.size() && (ClassOf(sql_[at_]) == kName || ClassOf(sql_[at_]) == kDigit)) ++at_;
  }

  void TakeName(std::string_view name) {
    const bool between = tsql::SameWord(name, "BETWEEN");
    operandExpected_ = between || (isBetween_ && tsql::SameWord(name, "AND"));
    isBetween_ = between || (isBetween_ && !operandExpected_);
    awaitsValues_ = tsql::SameWord(name, "VALUES");
  }

  bool TakeSymbol() {
    const char c = sql_[at_];
    const char next = Peek(at_ + 1);
    if (c == '?' || (c == '-' && next == '-') || (c == '/' && next == '*')) return false;
    if (c == '-' && operandExpected_ && ClassOf(next) == kDigit) {
      const std::size_t begin = at_++;
      TakeNumber(begin);
      return true;
    }
    ++at_;
    if (c == '(') {
      depth_ += 1;
      if (awaitsValues_) valuesDepth_ = depth_;
    }
    if (c == ')') {
      // A further row of the list may follow.
      if (depth_ == valuesDepth_) valuesDepth_ = 0, awaitsValues_ = true;
      depth_ -= 1;
    }
    if (c != ')' && c != ',') awaitsValues_ = false;
    const bool compares = c == '=' || c == '<' || c == '>';
    const bool lists = (c == '(' || c == ',') && valuesDepth_ != 0 && depth_ == valuesDepth_;
    operandExpected_ = compares || lists;
    return true;
  }

  // Digits, point, digits; whatever else a number can be (1e5, .5) is not shared. begin: of its sign, if any.
  void TakeNumber(std::size_t begin) {
    const std::size_t digits = at_;
    while (ClassOf(Peek(at_)) == kDigit) ++at_;
    std::size_t decimals = 0;
    if (Peek(at_) == '.' && ClassOf(Peek(at_ + 1)) == kDigit) {
      const std::size_t point = at_++;
      while (ClassOf(Peek(at_)) == kDigit) ++at_;
      decimals = at_ - point - 1;
    }
    const bool ends = Peek(at_) != '.' && ClassOf(Peek(at_)) != kName;
    const std::size_t length = at_ - digits - (decimals > 0 ? 1 : 0);
    if (operandExpected_ && ends && length <= kMostDigits && decimals <= kMostDecimals)
      Share(begin, decimals > 0);
    operandExpected_ = false;
  }

  void Share(std::size_t begin, bool decimal) {
    const char* first = sql_.data() + begin;
    const char* last = sql_.data() + at_;
    if (decimal) {
      double number = 0;
      std::from_chars(first, last, number);
      shared_.numbers.emplace_back(number);
    } else {
      std::int64_t number = 0;
      std::from_chars(first, last, number);
      shared_.numbers.emplace_back(number);
    }
    Copy(begin);
    copied_ = at_;
    shared_.sql += '?';
    shared_.sql += std::to_string(shared_.numbers.size());
    if (decimal) shared_.sql += '.';
  }

  std::string_view sql_;
  SharedText& shared_;
  std::size_t at_ = 0;
  std::size_t copied_ = 0;
  bool operandExpected_ = false;  // a number here is compared, assigned or a value of a list
  bool isBetween_ = false;        // behind BETWEEN, until its AND
  bool awaitsValues_ = false;     // behind VALUES, or behind one of its rows
  int depth_ = 0;                 // of brackets
  int valuesDepth_ = 0;           // of the row of VALUES being read; 0 outside one
};

}  // namespace

void ShareNumbers(std::string_view sql, SharedText& shared) {
  shared.sql.clear();
  shared.numbers.clear();
  if (IsShareable(sql) && Sharer(sql, shared).Run()) return;
  shared.sql = sql;
  shared.numbers.clear();
}

}  // namespace ktl
