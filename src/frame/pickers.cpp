#include "frame/pickers.h"

#include "frame/handler_guard.h"
#include "frame/session.h"
#include "screen/screen.h"

namespace ktl {

namespace {

template <typename Box>
PickerField Writing(Box& box) {
  return {&box, [&box] { return box.Text(); }, [&box](const std::string& chosen) { box.SetText(chosen); }};
}

template <typename Box>
void Ask(Session& session, Box& box, const Door<const PickerField&>& picker) {
  box.onDblClick = [&session, &box, &picker] {
    if (box.locked) return;
    RunGuarded(session, ErrorStyle::NumberFirst, "", [&] { picker(FieldOf(box)); });
  };
}

}  // namespace

PickerField FieldOf(TextBox& box) { return Writing(box); }

PickerField FieldOf(ComboBox& box) { return Writing(box); }

void AskForMonth(Session& session, TextBox& box) { Ask(session, box, session.doors.month); }

void AskForMonth(Session& session, ComboBox& box) { Ask(session, box, session.doors.month); }

void AskForDate(Session& session, TextBox& box) { Ask(session, box, session.doors.calendar); }

}  // namespace ktl
