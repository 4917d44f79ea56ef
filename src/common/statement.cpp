#include "common/statement.h"

#include <fmt/format.h>

#include <stdexcept>

#include "common/month_year.h"
#include "common/sql_text.h"
#include "runtime/numbers.h"

namespace ktl {

StatementHole::StatementHole(double amount) : text_(SqlAmount(amount)) {}

StatementHole::StatementHole(const Date& date) : text_(clsDateHandle::FnStrInDateDTM(date)) {}

void StatementHole::AppendTo(std::string& statement, const clsSPChar& literals) const {
  statement += typed_ ? literals.FnStrSpSQL(text_) : text_;
}

// By hand, since one statement a month is built: a formatter's store of arguments costs more than the
// filling.
Statement BuildStatement(const clsSPChar& literals, std::string_view text,
                         std::initializer_list<StatementHole> holes) {
  std::string filled;
  filled.reserve(text.size() + 16 * holes.size());
  std::size_t next = 0;
  while (true) {
    const std::size_t open = text.find('{');
    filled.append(text.substr(0, open));
    if (open == std::string_view::npos) return Statement(std::move(filled));
    const bool numbered = open + 2 < text.size() && text[open + 1] != '}';
    const std::size_t place = numbered ? static_cast<std::size_t>(text[open + 1] - '0') : next++;
    if (place >= holes.size()) throw std::runtime_error("a statement has more holes than values");
    holes.begin()[place].AppendTo(filled, literals);
    text.remove_prefix(open + (numbered ? 3 : 2));
  }
}

std::string SqlAmount(double amount) {
  if (WholePaise(amount)) {
    std::string text = FormatNumber(amount, "0.00");
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
    return text;
  }
  std::string text = fmt::format("{:.15g}", amount);
  if (text.find('e') != std::string::npos) text = fmt::format("{:.6f}", amount);
  return text;
}

}  // namespace ktl
