#include "screen/person.h"

#include <algorithm>
#include <utility>

#include "runtime/text.h"

namespace ktl {

namespace {

// Each control that asks for the focus in its predecessor's leave handler is granted it; two that throw it at
// each other for ever are stopped here.
constexpr int kMostFocusMoves = 16;

Handler LeaveHandlerOf(Control& control) {
  if (control.kind() == ControlKind::TextBox) return static_cast<TextBox&>(control).onLeave;
  if (control.kind() == ControlKind::ComboBox) return static_cast<ComboBox&>(control).onLeave;
  return {};
}

void RunLeaveHandler(Control* control) {
  if (!control || control->screen().IsUnloaded()) return;
  if (const Handler leave = LeaveHandlerOf(*control)) leave();
}

void GrantFocus(Screen& screen, Control* before) {
  for (int moves = 0; moves < kMostFocusMoves && screen.TakeFocusRequest(); ++moves) {
    Control* const after = screen.Focus();
    if (after == before) continue;
    RunLeaveHandler(std::exchange(before, after));
  }
}

[[noreturn]] void Refuse(const Control& control, std::string_view why) {
  throw PersonError(control.name() + " " + std::string(why));
}

void CheckUsable(const Control& control) {
  if (control.screen().IsUnloaded()) Refuse(control, "is on a closed screen");
  if (!control.IsShown()) Refuse(control, "is hidden");
  if (!control.IsUsable()) Refuse(control, "is disabled");
}

template <typename Box>
void CheckUnlocked(const Box& box) {
  CheckUsable(box);
  if (box.locked) Refuse(box, "is locked");
}

// False when the control that is left asks for the focus back, or when its leave handler closes the screen or
// takes the control away from the person: the act does not come to pass then.
bool MoveFocusTo(Control& control) {
  Screen& screen = control.screen();
  Control* const before = screen.Focus();
  if (before == &control) return true;
  LeaveFocus(screen);
  if (screen.IsUnloaded() || !control.IsUsable()) return false;
  if (before && screen.Focus() == before) return false;
  screen.NoteFocus(&control);
  return true;
}

// Moves the focus to the control, runs the act, grants what it asks for. False when the focus could not move.
template <typename Act>
bool ActOn(Control& control, const Act& act) {
  if (!MoveFocusTo(control)) return false;
  RunAndGrantFocus(control.screen(), act);
  return true;
}

// By value: a handler may put another one in its own place while it runs.
void Raise(Handler handler) {
  if (handler) handler();
}

void Raise(CellHandler handler, std::size_t row, std::size_t column) {
  if (handler) handler(row, column);
}

void CheckRow(const Grid& grid, std::size_t row) {
  CheckUsable(grid);
  const std::string number = std::to_string(row + 1);
  if (row >= grid.rows.size()) Refuse(grid, "has no row " + number);
  if (grid.rows[row].hidden) Refuse(grid, "hides row " + number);
}

void CheckCell(const Grid& grid, std::size_t row, std::size_t column) {
  CheckRow(grid, row);
  const std::string number = std::to_string(column + 1);
  if (column >= grid.columns.size()) Refuse(grid, "has no column " + number);
  if (grid.columns[column].hidden) Refuse(grid, "hides column " + number);
}

std::string CellName(std::size_t row, std::size_t column) {
  return "row " + std::to_string(row + 1) + ", column " + std::to_string(column + 1);
}

bool IsTyped(CellType type) { return type != CellType::Tick && type != CellType::Button; }

void CheckEditable(const Grid& grid, std::size_t row, std::size_t column, bool typed) {
  CheckCell(grid, row, column);
  const CellType type = grid.TypeOf(row, column);
  if (typed && !IsTyped(type)) Refuse(grid, "takes no text in " + CellName(row, column));
  if (!typed && type != CellType::Tick) Refuse(grid, "has no tick in " + CellName(row, column));
  if (grid.IsLocked(row, column)) Refuse(grid, "is locked in " + CellName(row, column));
}

void ActivateCell(Grid& grid, std::size_t row, std::size_t column) {
  const bool moves = grid.activeRow != row;
  grid.activeRow = row;
  grid.activeColumn = column;
  if (moves) Raise(grid.onRowClick, row, column);
}

void EditCell(Grid& grid, std::size_t row, std::size_t column, std::string text, bool typed) {
  CheckEditable(grid, row, column, typed);
  if (!ActOn(grid, [&] { ActivateCell(grid, row, column); })) return;
  // The handlers so far may have filled the grid anew, or closed the screen.
  CheckEditable(grid, row, column, typed);
  RunAndGrantFocus(grid.screen(), [&] {
    std::string& cell = grid.At(row, column).text;
    if (cell == text) return;
    cell = std::move(text);
    Raise(grid.onCellChange, row, column);
  });
}

}  // namespace

void RunAndGrantFocus(Screen& screen, const std::function<void()>& act) {
  Control* const before = screen.Focus();
  act();
  GrantFocus(screen, before);
}

void LeaveFocus(Screen& screen) {
  Control* const left = screen.Focus();
  screen.NoteFocus(nullptr);
  RunAndGrantFocus(screen, [left] { RunLeaveHandler(left); });
}

void Type(TextBox& box, std::string_view text) {
  CheckUnlocked(box);
  ActOn(box, [&] { box.TypeOver(text); });
  if (box.screen().Focus() == &box) LeaveFocus(box.screen());
}

void Type(ComboBox& box, std::string_view text) {
  CheckUnlocked(box);
  if (!box.editable) Refuse(box, "takes no typing");
  ActOn(box, [&] { box.SetText(std::string(text)); });
  if (box.screen().Focus() == &box) LeaveFocus(box.screen());
}

void Pick(ComboBox& box, std::string_view text) {
  CheckUnlocked(box);
  const std::size_t row = box.FindRow(text);
  if (row == ComboBox::kNoRow) Refuse(box, "does not list \"" + std::string(text) + "\"");
  ActOn(box, [&] { box.ChooseRow(row); });
  if (box.screen().Focus() == &box) LeaveFocus(box.screen());
}

void Pick(ListBox& list, std::string_view text) {
  CheckUsable(list);
  const auto row = std::find_if(list.rows.begin(), list.rows.end(),
                                [&](const TickRow& r) { return EqualsNoCase(r.text, text); });
  if (row == list.rows.end()) Refuse(list, "does not list \"" + std::string(text) + "\"");
  list.activeRow = static_cast<std::size_t>(row - list.rows.begin());
  ActOn(list, [&] { Raise(list.onClick); });
}

void Tick(CheckBox& box, bool on) {
  CheckUsable(box);
  ActOn(box, [&] { box.SetValue(on); });
}

void Tick(OptionButton& option) {
  CheckUsable(option);
  ActOn(option, [&] { option.SetValue(true); });
}

void Tick(ListBox& list, std::size_t row, bool on) {
  CheckUsable(list);
  if (!list.withTicks) Refuse(list, "has no ticks");
  if (row >= list.rows.size()) Refuse(list, "has no row " + std::to_string(row + 1));
  ActOn(list, [&] {
    list.activeRow = row;
    if (std::exchange(list.rows.at(row).ticked, on) == on) return;
    if (const auto onTick = list.onTick) onTick(row);
  });
}

void Click(Button& button) {
  CheckUsable(button);
  ActOn(button, [&] { Raise(button.onClick); });
}

// Labels and menus take no focus: the field that has it is not left.
void Click(Label& label) {
  CheckUsable(label);
  RunAndGrantFocus(label.screen(), [&] { Raise(label.onClick); });
}

void Click(Menu& menu) {
  CheckUsable(menu);
  RunAndGrantFocus(menu.screen(), [&] { Raise(menu.onClick); });
}

void DblClick(TextBox& box) {
  CheckUsable(box);
  ActOn(box, [&] { Raise(box.onDblClick); });
}

void DblClick(ComboBox& box) {
  CheckUsable(box);
  ActOn(box, [&] { Raise(box.onDblClick); });
}

void ShowPage(Tabs& tabs, std::size_t page) {
  CheckUsable(tabs);
  const std::string number = "page " + std::to_string(page + 1);
  if (page >= tabs.pages.size()) Refuse(tabs, "has no " + number);
  if (!tabs.pages[page].visible) Refuse(tabs, "hides " + number);
  if (!tabs.pages[page].enabled) Refuse(tabs, "has " + number + " disabled");
  ActOn(tabs, [&] { tabs.SetCurrent(page); });
}

void ClickRow(Grid& grid, std::size_t row) {
  CheckRow(grid, row);
  const auto shown =
      std::find_if(grid.columns.begin(), grid.columns.end(), [](const GridColumn& c) { return !c.hidden; });
  const std::size_t column =
      shown == grid.columns.end() ? 0 : static_cast<std::size_t>(shown - grid.columns.begin());
  ActOn(grid, [&] {
    grid.activeRow = row;
    grid.activeColumn = column;
    Raise(grid.onRowClick, row, column);
  });
}

void DblClick(Grid& grid, std::size_t row, std::size_t column) {
  CheckCell(grid, row, column);
  if (!ActOn(grid, [&] { ActivateCell(grid, row, column); })) return;
  CheckCell(grid, row, column);
  RunAndGrantFocus(grid.screen(), [&] { Raise(grid.onDblClick, row, column); });
}

void TypeCell(Grid& grid, std::size_t row, std::size_t column, std::string_view text) {
  EditCell(grid, row, column, std::string(text), true);
}

void TickCell(Grid& grid, std::size_t row, std::size_t column, bool on) {
  EditCell(grid, row, column, on ? "1" : "0", false);
}

}  // namespace ktl
