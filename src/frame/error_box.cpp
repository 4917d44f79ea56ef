#include "frame/error_box.h"

#include <fmt/format.h>

#include "frame/session.h"
#include "runtime/errors.h"

namespace ktl {

namespace {

using TextOf = std::string (*)(const RuntimeError&);

Handler Guarded(Session& session, Handler handler, std::string title, TextOf textOf) {
  return [&session, handler = std::move(handler), title = std::move(title), textOf] {
    try {
      handler();
    } catch (const RuntimeError& error) {
      session.desk.ShowError(textOf(error), title);
    }
  };
}

std::string NumberFirst(const RuntimeError& error) {
  return fmt::format("{}\t{}", error.number(), error.description());
}

std::string NumberLast(const RuntimeError& error) {
  return fmt::format("{} : {}", error.description(), error.number());
}

}  // namespace

Handler WithErrorBox(Session& session, Handler handler) {
  return WithErrorBox(session, std::move(handler), session.title);
}

Handler WithErrorBox(Session& session, Handler handler, std::string title) {
  return Guarded(session, std::move(handler), std::move(title), NumberFirst);
}

Handler WithNumberedErrorBox(Session& session, Handler handler, std::string title) {
  return Guarded(session, std::move(handler), std::move(title), NumberLast);
}

}  // namespace ktl
