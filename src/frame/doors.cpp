#include "frame/doors.h"

#include <fmt/format.h>

#include "frame/session.h"
#include "screen/screen.h"

namespace ktl {

void TellMissingScreen(Session& session, const std::string& screenName) {
  session.Inform(fmt::format("The screen \"{}\" is not part of this build yet.", screenName));
}

void ShowScreen(Session& session, Screen& screen) {
  Screen* const opener = session.ActiveForm;
  session.desk.ShowModal(screen);
  if (session.ActiveForm == &screen) session.ActiveForm = opener;
}

}  // namespace ktl
