#include "frame/refusal.h"

#include "frame/session.h"
#include "screen/screen.h"

namespace ktl {

void ShowRefusal(Session& session, Screen& screen, const std::string& text, Icon icon,
                 const std::string& title, Control* field) {
  if (!text.empty()) {
    session.desk.MsgBox({.text = text, .icon = icon, .title = title.empty() ? session.title : title});
  }
  if (field != nullptr) screen.SetFocus(*field);
}

}  // namespace ktl
