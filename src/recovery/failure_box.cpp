#include "recovery/failure_box.h"

#include <fmt/format.h>

#include "frame/session.h"
#include "runtime/errors.h"

namespace ktl {

Handler WithNumberedErrorBox(Session& session, std::string title, Handler handler) {
  return [&session, title = std::move(title), handler = std::move(handler)] {
    try {
      handler();
    } catch (const RuntimeError& failure) {
      session.desk.ShowError(fmt::format("{} : {}", failure.description(), failure.number()), title);
    }
  };
}

}  // namespace ktl
