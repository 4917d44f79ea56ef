#include "frame/screen_registry.h"

#include "frame/doors.h"
#include "frame/session.h"
#include "screen/screen.h"

namespace ktl {

std::vector<std::string> ScreenRegistry::Names() const {
  std::vector<std::string> names;
  for (const auto& [name, factory] : factories_) names.push_back(name);
  return names;
}

void ScreenRegistry::Show(Session& session, std::string_view name, Screen* parent) const {
  const auto found = factories_.find(name);
  if (found == factories_.end()) return TellMissingScreen(session, std::string(name));
  const std::unique_ptr<Screen> screen = found->second(session, parent);
  ShowScreen(session, *screen);
}

}  // namespace ktl
