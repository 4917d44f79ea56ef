#include "formula/token_rows.h"

#include <fmt/format.h>

#include <utility>

#include "runtime/numbers.h"

namespace ktl {

void AddNumber(TokenTable& table, std::string token, const Value& value, const char* source) {
  table.push_back({std::move(token), NumberText(value.NumberOr0()), source});
}

void AddText(TokenTable& table, std::string token, const std::string& text, const char* source) {
  table.push_back({std::move(token), "\"" + text + "\"", source});
}

void AddDate(TokenTable& table, std::string token, const std::string& date, const char* source) {
  table.push_back({std::move(token), "CDATE(\"" + date + "\")", source});
}

std::string SalaryField(bool earning, long salHeadRowId, long highestHead) {
  if (earning) {
    switch (salHeadRowId) {
      case 0:
        return "BASIC";
      case 100:
        return "OT1";
      case 101:
        return "OT2";
      case 102:
        return "GRATUITYPROV";
      default:
        break;
    }
  }
  if (salHeadRowId < 0 || salHeadRowId > highestHead) return "";
  return fmt::format("{}COMP{:02}", earning ? 'E' : 'D', salHeadRowId);
}

}  // namespace ktl
