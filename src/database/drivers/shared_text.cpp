#include "database/drivers/shared_text.h"

#include <cctype>
#include <charconv>

namespace ktl {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsWord(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.'; }

// Behind a literal or a name in brackets that starts here; a quote inside it is doubled and so ends it twice.
std::size_t SkipQuoted(std::string_view sql, std::size_t start) {
  const std::size_t end = sql.find(sql[start] == '[' ? ']' : sql[start], start + 1);
  return end == sql.npos ? sql.size() : end + 1;
}

bool IsCompared(const std::string& before) {
  const std::size_t last = before.find_last_not_of(' ');
  return last != before.npos && before[last] == '=';
}

}  // namespace

SharedText ShareNumbers(std::string_view sql) {
  SharedText shared;
  shared.sql.reserve(sql.size());
  for (std::size_t at = 0; at < sql.size();) {
    std::size_t end = at + 1;
    if (sql[at] == '\'' || sql[at] == '"' || sql[at] == '[') {
      end = SkipQuoted(sql, at);
    } else if (IsWord(sql[at])) {
      while (end < sql.size() && IsWord(sql[end])) ++end;
    } else if (sql[at] == '?') {
      return {std::string(sql), {}};  // has parameters of its own
    }
    std::int64_t number = 0;
    const auto [rest, error] = std::from_chars(sql.data() + at, sql.data() + end, number);
    const bool whole = IsDigit(sql[at]) && error == std::errc() && rest == sql.data() + end;
    if (whole && IsCompared(shared.sql)) {
      shared.numbers.push_back(number);
      shared.sql += '?';
    } else {
      shared.sql.append(sql, at, end - at);
    }
    at = end;
  }
  return shared;
}

}  // namespace ktl
