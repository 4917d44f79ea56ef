#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "screen/grid.h"

namespace ktl {

// The rows that can be ticked, of a grid's column or of a list box.
struct TickRows {
  std::function<std::size_t()> count;
  std::function<bool(std::size_t row)> isTicked;
  std::function<bool(std::size_t row)> isLocked;  // no road ticks it
  std::function<void(std::size_t row, bool ticked)> setTicked;
};
TickRows TickRowsOf(Grid& grid, std::size_t column);
TickRows TickRowsOf(ListBox& list);

// Tick-all with its box and its menu, and the counters, over rows that can be ticked one by one. The screen
// calls Count when a row was ticked or the rows are others.
class TickList {
 public:
  struct Around {
    CheckBox* all = nullptr;        // follows the rows: set when all that can be ticked are
    Menu* tickAll = nullptr;        // of the right button
    Label* listed = nullptr;        // "Listed: 12"
    Label* selected = nullptr;      // "Selected: 3"
    std::string behindWord = ": ";  // between the word and the number
    std::function<void()> changed;  // after the box or the menu has changed ticks
  };
  TickList(TickRows rows, Around around);
  TickList(const TickList&) = delete;
  TickList& operator=(const TickList&) = delete;

  void TickAll(bool ticked);  // the locked rows stay as they are
  void Count();
  std::vector<std::size_t> Ticked() const;

 private:
  TickRows rows_;
  Around around_;
  bool counting_ = false;
};

}  // namespace ktl
