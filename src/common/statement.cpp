#include "common/statement.h"

#include <fmt/args.h>
#include <fmt/format.h>

#include "common/month_year.h"
#include "common/sql_text.h"
#include "runtime/numbers.h"

namespace ktl {

StatementHole::StatementHole(double amount) : text_(SqlAmount(amount)) {}

StatementHole::StatementHole(const Date& date) : text_(clsDateHandle::FnStrInDateDTM(date)) {}

std::string StatementHole::TextFor(const clsSPChar& literals) const {
  return typed_ ? literals.FnStrSpSQL(text_) : text_;
}

Statement BuildStatement(const clsSPChar& literals, std::string_view text,
                         std::initializer_list<StatementHole> holes) {
  fmt::dynamic_format_arg_store<fmt::format_context> fillings;
  for (const StatementHole& hole : holes) fillings.push_back(hole.TextFor(literals));
  return Statement(fmt::vformat(text, fillings));
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
