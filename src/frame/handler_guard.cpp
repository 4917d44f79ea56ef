#include "frame/handler_guard.h"

#include <fmt/format.h>

#include "frame/session.h"
#include "runtime/errors.h"

namespace ktl {

void RunGuarded(Session& session, ErrorStyle style, const std::string& title,
                const std::function<void()>& work) {
  try {
    work();
    session.desk.Flush();
  } catch (const RuntimeError& error) {
    session.desk.ShowError(style == ErrorStyle::NumberFirst
                               ? fmt::format("{}\t{}", error.number(), error.description())
                               : fmt::format("{} : {}", error.description(), error.number()),
                           title.empty() ? session.title : title);
  }
}

}  // namespace ktl
