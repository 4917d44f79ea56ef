#include "frame/saved_box.h"

#include "frame/session.h"

namespace ktl {

void ShowSaved(Session& session) {
  session.desk.NoteSaved();
  session.desk.MsgBox({.text = "Updated", .title = kSavingTitle, .closesItselfMs = 1000});
}

}  // namespace ktl
