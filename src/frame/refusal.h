#pragma once

#include <map>
#include <string>

#include "screen/desk.h"

namespace ktl {

class Control;
class Screen;
struct Session;

// The first thing that stands against what a person asked for. A question that was answered with No leaves no
// text.
template <typename Field>
struct Refusal {
  std::string text;
  Field field{};  // where the focus goes
  Icon icon = Icon::Information;
  std::string title = {};  // "" for the application's own
};

// The box (none without a text), then the focus (none without a control).
void ShowRefusal(Session& session, Screen& screen, const std::string& text, Icon icon,
                 const std::string& title, Control* field);

// False always, so that a handler can end with it. A field without a control gets no focus.
template <typename Field>
bool Refuse(Session& session, Screen& screen, const Refusal<Field>& refusal,
            const std::map<Field, Control*>& controls) {
  const auto found = controls.find(refusal.field);
  ShowRefusal(session, screen, refusal.text, refusal.icon, refusal.title,
              found == controls.end() ? nullptr : found->second);
  return false;
}

}  // namespace ktl
