#include "frame/session.h"

#include <algorithm>

#include "common/sql_text.h"

namespace ktl {

// The settings are asked only when there is a text to double: a run over many months fills in numbers alone.
Statement Session::FillIn(std::string_view text, std::initializer_list<StatementHole> holes) const {
  const bool typed = std::ranges::any_of(holes, &StatementHole::isTyped);
  return BuildStatement(clsSPChar(typed ? machine.settings.Get("Settings", "DBType", "ACC97") : ""), text,
                        holes);
}

}  // namespace ktl
