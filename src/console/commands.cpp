#include "console/commands.h"

#include <map>

#include "console/transcript.h"
#include "screen/person.h"

namespace ktl {

namespace {

struct Stage {
  CommandWords& words;
  Screen& screen;
  std::ostream& out;
};

Control& TakeControl(Stage& stage) {
  const std::string name = stage.words.Word("NAME");
  if (Control* const control = stage.screen.Find(name)) return *control;
  throw CommandError(stage.screen.name() + " has no control " + name);
}

template <typename Kind>
Kind* As(Control& control) {
  return dynamic_cast<Kind*>(&control);
}

[[noreturn]] void RefuseKind(const Control& control, std::string_view what) {
  throw CommandError(control.name() + " is no " + std::string(what));
}

Grid& TakeGrid(Stage& stage) {
  Control& control = TakeControl(stage);
  if (auto* const grid = As<Grid>(control)) return *grid;
  RefuseKind(control, "grid");
}

void RunText(Stage& stage) {
  Control& control = TakeControl(stage);
  const std::string value = stage.words.Value();
  if (auto* const box = As<TextBox>(control)) return Type(*box, value);
  if (auto* const combo = As<ComboBox>(control)) return Type(*combo, value);
  RefuseKind(control, "text box or combo");
}

void RunPick(Stage& stage) {
  Control& control = TakeControl(stage);
  const std::string value = stage.words.Value();
  if (auto* const combo = As<ComboBox>(control)) return Pick(*combo, value);
  if (auto* const list = As<ListBox>(control)) return Pick(*list, value);
  RefuseKind(control, "combo or list");
}

void RunTick(Stage& stage) {
  Control& control = TakeControl(stage);
  auto* const list = As<ListBox>(control);
  const std::size_t row = list ? stage.words.Index("the row") : 0;
  const bool on = stage.words.OnOrOff();
  stage.words.End();
  if (list) return Tick(*list, row, on);
  if (auto* const box = As<CheckBox>(control)) return Tick(*box, on);
  auto* const option = As<OptionButton>(control);
  if (!option) RefuseKind(control, "check box, option button or list");
  if (!on) throw CommandError(option->name() + " is cleared by setting another option of its group");
  Tick(*option);
}

void RunClick(Stage& stage) {
  Control& control = TakeControl(stage);
  stage.words.End();
  if (auto* const button = As<Button>(control)) return Click(*button);
  if (auto* const label = As<Label>(control)) return Click(*label);
  RefuseKind(control, "button or label");
}

void RunDblClick(Stage& stage) {
  Control& control = TakeControl(stage);
  if (auto* const grid = As<Grid>(control)) {
    const std::size_t row = stage.words.Index("the row");
    const std::size_t column = stage.words.Index("the column");
    stage.words.End();
    return DblClick(*grid, row, column);
  }
  stage.words.End();
  if (auto* const box = As<TextBox>(control)) return DblClick(*box);
  if (auto* const combo = As<ComboBox>(control)) return DblClick(*combo);
  if (auto* const label = As<Label>(control)) return Click(*label);  // it answers either
  RefuseKind(control, "text box, combo, label or grid");
}

void RunMenu(Stage& stage) {
  Control& control = TakeControl(stage);
  stage.words.End();
  auto* const menu = As<Menu>(control);
  if (!menu) RefuseKind(control, "menu");
  Click(*menu);
}

void RunRow(Stage& stage) {
  Grid& grid = TakeGrid(stage);
  const std::size_t row = stage.words.Index("the row");
  stage.words.End();
  ClickRow(grid, row);
}

void RunCell(Stage& stage) {
  Grid& grid = TakeGrid(stage);
  const std::size_t row = stage.words.Index("the row");
  const std::size_t column = stage.words.Index("the column");
  TypeCell(grid, row, column, stage.words.Value());
}

void RunTickCell(Stage& stage) {
  Grid& grid = TakeGrid(stage);
  const std::size_t row = stage.words.Index("the row");
  const std::size_t column = stage.words.Index("the column");
  const bool on = stage.words.OnOrOff();
  stage.words.End();
  TickCell(grid, row, column, on);
}

void RunTab(Stage& stage) {
  Control& control = TakeControl(stage);
  const std::size_t page = stage.words.Index("the page");
  stage.words.End();
  auto* const tabs = As<Tabs>(control);
  if (!tabs) RefuseKind(control, "tab control");
  ShowPage(*tabs, page);
}

void RunPrint(Stage& stage) {
  const Control& control = TakeControl(stage);
  stage.words.End();
  stage.out << control.name() << " = " << OneLine(ValueOf(control)) << '\n';
}

void RunState(Stage& stage) {
  const Control& control = TakeControl(stage);
  stage.words.End();
  stage.out << StateJson(control) << '\n';
}

void RunGrid(Stage& stage) {
  const Grid& grid = TakeGrid(stage);
  const std::string which = stage.words.WordOr("shown");
  stage.words.End();
  if (which != "shown" && which != "all")
    throw CommandError("all or nothing is expected, not \"" + which + "\"");
  stage.out << GridTable(grid, which == "all") << '\n';
}

void RunScreen(Stage& stage) {
  stage.words.End();
  stage.out << ScreenJson(stage.screen) << '\n';
}

void RunClose(Stage& stage) {
  stage.words.End();
  RunAndGrantFocus(stage.screen, [&] { stage.screen.Unload(); });
}

using Command = void (*)(Stage&);

const std::map<std::string, Command, std::less<>>& Commands() {
  static const std::map<std::string, Command, std::less<>> commands{
      {"text", RunText}, {"pick", RunPick},         {"tick", RunTick},   {"click", RunClick},
      {"menu", RunMenu}, {"dblclick", RunDblClick}, {"row", RunRow},     {"cell", RunCell},
      {"tab", RunTab},   {"tickcell", RunTickCell}, {"print", RunPrint}, {"state", RunState},
      {"grid", RunGrid}, {"screen", RunScreen},     {"close", RunClose},
  };
  return commands;
}

}  // namespace

void RunScreenCommand(const std::string& verb, CommandWords& words, Screen& screen, std::ostream& out) {
  const auto command = Commands().find(verb);
  if (command == Commands().end()) throw CommandError("unknown command " + verb);
  Stage stage{words, screen, out};
  command->second(stage);
}

}  // namespace ktl
