#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ktl {

class Screen;
struct Session;

// Screens by name: for the command line, which names the screen to open. RegisterScreens fills it. A screen
// opens another one by the session's doors.
class ScreenRegistry {
 public:
  // parent: the screen that opens it, null at the top.
  using Factory = std::function<std::unique_ptr<Screen>(Session& session, Screen* parent)>;

  // The first one of a name stays.
  void Add(std::string name, Factory factory) { factories_.try_emplace(std::move(name), std::move(factory)); }
  bool Has(std::string_view name) const { return factories_.contains(name); }
  std::vector<std::string> Names() const;
  // As a door does: a screen that is not there answers with one plain message that names it.
  void Show(Session& session, std::string_view name, Screen* parent = nullptr) const;

 private:
  std::map<std::string, Factory, std::less<>> factories_;
};

}  // namespace ktl
