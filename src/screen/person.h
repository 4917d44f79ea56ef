#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "screen/controls.h"
#include "screen/grid.h"
#include "screen/screen.h"

namespace ktl {

// What a person cannot do on the screen, said plainly: "cmdSave is disabled".
class PersonError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The acts of a person on a screen, for every desk that has no window. Each checks that the control is on an
// open screen, shown and enabled, moves the focus as the person's hand would, runs the handlers and then
// grants the focus that they asked for. Rows, columns and pages count from 0. Throws PersonError when the act
// is not possible.

// Empties the field, types through its key filter, then leaves it.
void Type(TextBox& box, std::string_view text);
void Type(ComboBox& box, std::string_view text);
// Chooses the first row that shows the text, letter case ignored; a combo is left then.
void Pick(ComboBox& box, std::string_view text);
void Pick(ListBox& list, std::string_view text);

void Tick(CheckBox& box, bool on);
void Tick(OptionButton& option);
void Tick(ListBox& list, std::size_t row, bool on);

void Click(Button& button);
void Click(Label& label);
void Click(Menu& menu);
void DblClick(TextBox& box);
void DblClick(ComboBox& box);
void ShowPage(Tabs& tabs, std::size_t page);

void ClickRow(Grid& grid, std::size_t row);  // on its first column that is shown
void DblClick(Grid& grid, std::size_t row, std::size_t column);
// A cell of a row that is not the active one is clicked first. onCellChange is raised when the text differs.
void TypeCell(Grid& grid, std::size_t row, std::size_t column, std::string_view text);
void TickCell(Grid& grid, std::size_t row, std::size_t column, bool on);

// Leaves the control that has the focus, which goes nowhere unless the leave handler asks for it.
void LeaveFocus(Screen& screen);
// Runs what may ask for the focus (a load, a timer, a handler) and grants the request afterwards: the control
// that had the focus is left.
void RunAndGrantFocus(Screen& screen, const std::function<void()>& act);

}  // namespace ktl
