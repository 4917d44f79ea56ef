#include "frame/pickers.h"

#include "frame/handler_guard.h"
#include "frame/session.h"
#include "screen/screen.h"

namespace ktl {

namespace {

void Ask(Session& session, TextBox& box, const Door<TextBox&>& picker) {
  box.onDblClick = [&session, &box, &picker] {
    RunGuarded(session, ErrorStyle::NumberFirst, "", [&] { picker(box); });
  };
}

}  // namespace

void AskForMonth(Session& session, TextBox& box) { Ask(session, box, session.doors.month); }

void AskForDate(Session& session, TextBox& box) { Ask(session, box, session.doors.calendar); }

}  // namespace ktl
