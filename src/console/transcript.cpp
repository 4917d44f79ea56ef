#include "console/transcript.h"

#include <fmt/format.h>

#include <vector>

#include "runtime/text.h"

namespace ktl {

namespace {

std::string Quoted(std::string_view text) {
  std::string json = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      json += {'\\', c};
    } else if (c == '\n') {
      json += "\\n";
    } else if (static_cast<unsigned char>(c) < 0x20) {
      json += fmt::format("\\u{:04x}", static_cast<int>(c));
    } else {
      json += c;
    }
  }
  return json + '"';
}

std::string OnOrOff(bool on) { return on ? "on" : "off"; }

std::string NumberFromOne(std::size_t index) { return index == kNoRow ? "" : std::to_string(index + 1); }

bool IsLocked(const Control& control) {
  if (control.kind() == ControlKind::TextBox) return static_cast<const TextBox&>(control).locked;
  return control.kind() == ControlKind::ComboBox && static_cast<const ComboBox&>(control).locked;
}

std::string CaptionOf(const Control& control) {
  if (const auto* box = dynamic_cast<const CheckBox*>(&control)) return box->caption;
  if (const auto* option = dynamic_cast<const OptionButton*>(&control)) return option->caption;
  return {};
}

// The inside of a state's braces.
std::string StateFields(const Control& control) {
  return fmt::format(R"("enabled":{},"visible":{},"locked":{},"value":{},"tag":{})", control.IsUsable(),
                     control.IsShown(), IsLocked(control), Quoted(ValueOf(control)), Quoted(control.tag));
}

template <typename Items, typename Write>
std::string JsonArray(const Items& items, const Write& write) {
  std::vector<std::string> parts;
  for (const auto& item : items) parts.push_back(write(item));
  return fmt::format("[{}]", fmt::join(parts, ","));
}

std::string GridFields(const Grid& grid) {
  const auto column = [](const GridColumn& c) {
    return fmt::format(R"({{"caption":{},"hidden":{}}})", Quoted(c.caption), c.hidden);
  };
  const auto cell = [](const GridCell& c) { return Quoted(c.text); };
  const auto row = [&](const GridRow& r) {
    return fmt::format(R"({{"hidden":{},"tag":{},"cells":{}}})", r.hidden, Quoted(r.tag),
                       JsonArray(r.cells, cell));
  };
  return fmt::format(R"(,"columns":{},"rows":{})", JsonArray(grid.columns, column),
                     JsonArray(grid.rows, row));
}

// What only some kinds of controls have.
std::string FurtherFields(const Control& control) {
  std::string fields;
  if (const std::string caption = CaptionOf(control); !caption.empty())
    fields += ",\"caption\":" + Quoted(caption);
  if (!control.toolTip.empty()) fields += ",\"toolTip\":" + Quoted(control.toolTip);
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control)) {
    fields += ",\"rows\":" + JsonArray(combo->Rows(), [](const ListRow& row) { return Quoted(row.text); });
  } else if (const auto* list = dynamic_cast<const ListBox*>(&control)) {
    fields += ",\"rows\":" + JsonArray(list->rows, [](const TickRow& row) {
                return fmt::format(R"({{"text":{},"ticked":{}}})", Quoted(row.text), row.ticked);
              });
  } else if (const auto* tabs = dynamic_cast<const Tabs*>(&control)) {
    fields +=
        ",\"pages\":" + JsonArray(tabs->pages, [](const Tabs::Page& page) { return Quoted(page.caption); });
  } else if (const auto* grid = dynamic_cast<const Grid*>(&control)) {
    fields += GridFields(*grid);
  }
  return fields;
}

}  // namespace

std::string OneLine(std::string_view text) {
  return ReplaceAll(ReplaceAll(std::string(text), "\r", ""), "\n", "\\n");
}

std::string BoxLine(const MessageBox& box, Answer answer) {
  return fmt::format("box | {} | {} | {} | {}", NameOf(box.icon), OneLine(box.title), OneLine(box.text),
                     NameOf(answer));
}

std::string ValueOf(const Control& control) {
  switch (control.kind()) {
    case ControlKind::TextBox:
      return static_cast<const TextBox&>(control).Text();
    case ControlKind::ComboBox:
      return static_cast<const ComboBox&>(control).Text();
    case ControlKind::ListBox: {
      const auto& list = static_cast<const ListBox&>(control);
      return list.activeRow < list.rows.size() ? list.rows[list.activeRow].text : "";
    }
    case ControlKind::CheckBox:
      return OnOrOff(static_cast<const CheckBox&>(control).Value());
    case ControlKind::OptionButton:
      return OnOrOff(static_cast<const OptionButton&>(control).Value());
    case ControlKind::Button:
      return static_cast<const Button&>(control).caption;
    case ControlKind::Label:
      return static_cast<const Label&>(control).caption;
    case ControlKind::Frame:
      return static_cast<const Frame&>(control).caption;
    case ControlKind::Menu:
      return static_cast<const Menu&>(control).caption;
    case ControlKind::Grid:
      return NumberFromOne(static_cast<const Grid&>(control).activeRow);
    case ControlKind::Tabs:
      return NumberFromOne(static_cast<const Tabs&>(control).Current());
    case ControlKind::Timer:
      return OnOrOff(control.enabled);
    case ControlKind::ProgressBar:
      return std::to_string(static_cast<const ProgressBar&>(control).value);
  }
  return {};
}

std::string StateJson(const Control& control) {
  return fmt::format("{{{}:{{{}}}}}", Quoted(control.name()), StateFields(control));
}

std::string GridTable(const Grid& grid, bool withHidden) {
  const auto isShown = [&](std::size_t column) { return withHidden || !grid.columns[column].hidden; };
  const auto line = [&](const auto& textOf) {
    std::vector<std::string> cells;
    for (std::size_t column = 0; column < grid.columns.size(); ++column) {
      if (isShown(column)) cells.push_back(ReplaceAll(OneLine(textOf(column)), "\t", "\\t"));
    }
    return fmt::format("{}", fmt::join(cells, "\t"));
  };
  std::string table = line([&](std::size_t column) { return grid.columns[column].caption; });
  for (std::size_t row = 0; row < grid.rows.size(); ++row) {
    if (grid.rows[row].hidden && !withHidden) continue;
    table += '\n' + line([&](std::size_t column) { return grid.Text(row, column); });
  }
  return table;
}

std::string ScreenJson(const Screen& screen) {
  std::vector<std::string> controls;
  for (const Control* control : screen.Controls()) {
    controls.push_back(
        fmt::format("{}:{{{}{}}}", Quoted(control->name()), StateFields(*control), FurtherFields(*control)));
  }
  const std::string focus = screen.Focus() ? Quoted(screen.Focus()->name()) : "null";
  return fmt::format("{{\"screen\":{},\"caption\":{},\"focus\":{},\"controls\":{{\n{}\n}}}}",
                     Quoted(screen.name()), Quoted(screen.caption), focus, fmt::join(controls, ",\n"));
}

}  // namespace ktl
