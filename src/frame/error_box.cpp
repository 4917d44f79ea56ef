#include "frame/error_box.h"

#include <fmt/format.h>

#include "frame/session.h"
#include "runtime/errors.h"

namespace ktl {

Handler WithErrorBox(Session& session, Handler handler) {
  return [&session, handler = std::move(handler)] {
    try {
      handler();
    } catch (const RuntimeError& error) {
      session.desk.ShowError(fmt::format("{}\t{}", error.number(), error.description()), session.title);
    }
  };
}

}  // namespace ktl
