#pragma once

#include <functional>
#include <string>

#include "screen/controls.h"

namespace ktl {

// A field that searches by itself, a moment after the last key.
class QuickSearch {
  Screen& screen_;  // the controls register with it

 public:
  // timerName: "tmrSearch" as a rule. search gets the text without the blanks at its ends.
  QuickSearch(Screen& screen, std::string boxName, std::string timerName,
              std::function<void(const std::string& text)> search);

  TextBox txtSearch;
  Timer tmrSearch;

 private:
  std::function<void(const std::string& text)> search_;
};

}  // namespace ktl
