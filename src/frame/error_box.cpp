#include "frame/error_box.h"

#include <fmt/format.h>

#include "frame/session.h"
#include "runtime/errors.h"

namespace ktl {

Handler WithErrorBox(Session& session, Handler handler) {
  return WithErrorBox(session, std::move(handler), session.title);
}

Handler WithErrorBox(Session& session, Handler handler, std::string title) {
  return [&session, handler = std::move(handler), title = std::move(title)] {
    try {
      handler();
    } catch (const RuntimeError& error) {
      session.desk.ShowError(fmt::format("{}\t{}", error.number(), error.description()), title);
    }
  };
}

}  // namespace ktl
