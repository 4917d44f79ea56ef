#include "frame/handler_guard.h"

#include <fmt/format.h>

#include "frame/rights.h"
#include "frame/session.h"
#include "runtime/errors.h"

namespace ktl {

namespace {

std::string TextOf(const RuntimeError& error, ErrorStyle style) {
  switch (style) {
    case ErrorStyle::NumberFirst:
      return fmt::format("{}\t{}", error.number(), error.description());
    case ErrorStyle::DescriptionFirst:
      return fmt::format("{} : {}", error.description(), error.number());
    case ErrorStyle::DescriptionOnly:
      break;
  }
  return error.description();
}

}  // namespace

void RunGuarded(Session& session, ErrorStyle style, const std::string& title,
                const std::function<void()>& work) {
  try {
    work();
    session.desk.Flush();
  } catch (const RuntimeError& error) {
    session.desk.ShowError(TextOf(error, style), title.empty() ? session.title : title);
  }
}

std::function<void()> WhenPermitted(Session& session, const Button& button, std::function<void()> work) {
  return [&session, &button, work = std::move(work)] {
    if (!FnBlnPermitted(session, button)) work();
  };
}

}  // namespace ktl
