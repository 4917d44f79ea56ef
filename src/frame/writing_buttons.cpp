#include "frame/writing_buttons.h"

#include "frame/rights.h"
#include "frame/session.h"
#include "screen/controls.h"

namespace ktl {

bool EnableWriting(const Session& session, std::initializer_list<Button*> buttons, WriteLock lock) {
  const bool asked = session.ReadOnlyUser || lock == WriteLock::OfUserAndEmployee;
  const std::string why = asked ? WhyReadOnly(session) : "";
  for (Button* button : buttons) {
    button->enabled = why.empty();
    button->whyDisabled = why;
  }
  return why.empty();
}

}  // namespace ktl
